#include "books/screens/frmPrimaNotaEdita.h"

#include <QComboBox>
#include <QCompleter>
#include <QFormLayout>
#include <QLabel>
#include <QStringList>

#include "books/prima_nota.h"
#include "core/archivio_sql.h"
#include "core/dialogs.h"
#include "store/clock.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/VText.h"
#include "ui/VetraPicker.h"

namespace {

// What earlier payments wrote in a field, offered as the user types.
void completaDaPagamenti(ui::VText* casella, const char* campo) {
    QStringList voci;
    ui::protetto([&voci, campo] {
        const std::string c = campo;
        auto rs = core::Apri("Select Distinct " + c + " from Pagamenti where " + c + "<>'' order by " + c);
        for (; !rs->Eof(); rs->MoveNext()) voci << QString::fromStdString(store::ConcatText(rs->get(c)));
    });
    auto* completa = new QCompleter(voci, casella);
    completa->setCaseSensitivity(Qt::CaseInsensitive);
    casella->setCompleter(completa);
}

ui::VText* casella(const char* nome, QWidget* parent) {
    auto* v = new ui::VText(parent);
    v->setObjectName(nome);
    return v;
}

QComboBox* elenco(const char* nome, const std::vector<std::string>& voci, QWidget* parent) {
    auto* c = new QComboBox(parent);
    c->setObjectName(nome);
    for (const std::string& v : voci) c->addItem(QString::fromStdString(v));
    return c;
}

}  // namespace

frmPrimaNotaEdita::frmPrimaNotaEdita(QWidget* parent, long destinazione)
    : EditorBase(Nome, "PrimaNota", "Prima Nota", parent), destinazione_(destinazione) {
    const core::TabellaCampi& campi = books::CampiPrimaNota();
    pkData = new ui::VetraPicker(this);
    pkData->setObjectName("pkData");
    pkData->setValore(store::Value::Date(store::Oggi()));
    txtDescrizione = casella("txtDescrizione", this);
    VText1 = casella("VText1", this);
    VText1->setNumerico(true);
    VText1->setMaschera("#,0.00");
    VText1->setMaximumWidth(160);
    pkData->setMaximumWidth(160);
    cbTipo = elenco("cbTipo", {"Entrata", "Uscita"}, this);
    cbDest = elenco("cbDest", books::Destinazioni(), this);
    txtPagamento = casella("txtPagamento", this);
    txtCC = casella("txtCC", this);

    aggiungiCampo(campi["Descrizione"], txtDescrizione);
    aggiungiCampo(campi["Data"], pkData);
    aggiungiCampo(campi["Importo"], VText1);
    aggiungiCampo("&Tipo", cbTipo);
    lblTipo = qobject_cast<QLabel*>(this->campi()->labelForField(cbTipo));
    aggiungiCampo("&Destinazione", cbDest);
    aggiungiCampo(campi["TipoPagamento"], txtPagamento);
    aggiungiCampo(campi["CC"], txtCC);
    completaDaPagamenti(txtCC, "CC");
    completaDaPagamenti(txtPagamento, "TipoPagamento");
    setMinimumWidth(520);
}

void frmPrimaNotaEdita::DopoCarica() {
    pagamento_ = 0;
    long tipo = 0, destinazione = destinazione_;
    const long origine = nuovo() ? apertura().id : id();
    if (apertura().modalita != Modalita::Nuovo && origine > 0) {
        auto rs = core::Apri("Select Tipo, Destinazione, Pagamento from PrimaNota where ID=" + std::to_string(origine));
        if (!rs->Eof()) {
            tipo = static_cast<long>(core::NumeroOZero(rs->get("Tipo")));
            destinazione = static_cast<long>(core::NumeroOZero(rs->get("Destinazione")));
            // A copy is a row of its own, typed here.
            if (!nuovo()) pagamento_ = static_cast<long>(core::NumeroOZero(rs->get("Pagamento")));
        }
    }
    cbTipo->setCurrentIndex(tipo == 1 ? 1 : 0);
    cbDest->setCurrentIndex(destinazione >= 0 && destinazione <= 2 ? static_cast<int>(destinazione) : -1);
    // A mirrored row's type and amount change only in its payment.
    const bool specchio = pagamento_ > 0;
    cbTipo->setVisible(!specchio);
    if (lblTipo) lblTipo->setVisible(!specchio);
    VText1->setReadOnly(specchio);
}

bool frmPrimaNotaEdita::Valida() {
    const auto errore = books::ControllaVoce(txtDescrizione->text().toStdString(), VText1->text().toStdString(),
                                             cbDest->currentIndex(), pkData->testo());
    if (!errore) return true;
    core::MsgBox(*errore, core::vbExclamation);
    if (txtDescrizione->text().trimmed().isEmpty()) txtDescrizione->setFocus();
    else if (cbDest->currentIndex() < 0) cbDest->setFocus();
    else if (!store::ParseDateText(pkData->testo())) pkData->setFocus();
    else VText1->setFocus();
    return false;
}

void frmPrimaNotaEdita::PrimaDiAggiornare(store::Recordset& rs) {
    if (pagamento_ <= 0) rs.set("Tipo", store::Value::Long(cbTipo->currentIndex() == 1 ? 1 : 0));
    rs.set("Destinazione", store::Value::Long(cbDest->currentIndex()));
}

void frmPrimaNotaEdita::DopoSalvato(long) {
    if (pagamento_ <= 0) return;
    const double data = store::CDate(pkData->valore());
    core::Archivio().Execute(books::SqlAggiornaPagamento(pagamento_, txtDescrizione->text().toStdString(),
                                                          core::DataSql(data), txtPagamento->text().toStdString()));
}
