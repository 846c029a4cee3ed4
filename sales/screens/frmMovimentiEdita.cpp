#include "sales/screens/frmMovimentiEdita.h"

#include "core/archivio_sql.h"
#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "core/registro_schermi.h"
#include "core/session.h"
#include "sales/totali.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

ui::VText* casella(const char* nome, const char* campo, QWidget* parent, const char* predefinito = nullptr) {
    auto* t = new ui::VText(parent);
    t->setObjectName(nome);
    t->setDataField(campo);
    if (predefinito) {
        t->setNumerico(true);
        t->setPredefinito(predefinito);
    }
    return t;
}

ui::VetraCombo* comboIva(QWidget* parent) {
    auto* c = new ui::VetraCombo(parent);
    c->setObjectName("cbIva");
    c->setCampoDestinazione("Iva");
    c->setSorgente("Select * from CodiciIva order by DescIva");
    c->setCampoTesto("DescIva");
    c->setColonne({{"DescIva", core::Testo("s77"), 1500}, {"AliquotaIva", core::Testo("s190"), 1000}});
    ui::protetto([c] { c->Aggiorna(); });
    return c;
}

void testo(ui::VText* t, const store::Value& v) { t->setTesto(store::NumberText(v.isNull() ? 0 : store::CDbl(v))); }

// The document a line or charge belongs to: the master it is added to, or the one it holds.
long documentoDi(const EditorBase& e, const std::string& tabella) {
    if (e.nuovo()) return e.apertura().idPadre;
    auto rs = core::ArchivioAperto()->OpenRecordset("Select Documento from " + tabella + " where ID=" +
                                                     std::to_string(e.id()));
    return rs->Eof() ? 0 : ui::IdDi(rs->get("Documento"));
}

}  // namespace

frmMovimentiEdita::frmMovimentiEdita(QWidget* parent)
    : EditorBase(Nome, "Movimenti", core::Testo("s144"), parent),
      cbServizi(new ui::VetraCombo(this)),
      txtDesc(casella("txtDesc", "DescMovimento", this)),
      txtRiferimenti(casella("txtRiferimenti", "Riferimenti", this)),
      txtQuantita(casella("txtQuantita", "Quantita", this, "0")),
      txtPrezzo(casella("txtPrezzo", "PrezzoUnitario", this, "0,000")),
      txtSc1(casella("txtSc1", "Sconto1", this, "0")),
      txtSc2(casella("txtSc2", "Sconto2", this, "0")),
      txtImporto(casella("txtImporto", "Importo", this, "0,00")),
      cbIva(comboIva(this)) {
    cbServizi->setObjectName("cbServizi");
    cbServizi->setCampoDestinazione("Servizio");
    cbServizi->setSorgente("Select * from qrServizi");
    cbServizi->setCampoTesto("DescServizio");
    cbServizi->setColonne({{"DescServizio", core::Testo("s77"), 2000},
                           {"CodiceInterno", core::Testo("s251"), 1500},
                           {"CostoUnitario", core::Testo("s251"), 1200, "#,0.00"}});
    ui::protetto([this] { cbServizi->Aggiorna(); });
    txtPrezzo->setMaschera("#,0.000");
    txtPrezzo->setCaratteriAmmessi("1234567890.,-");
    txtImporto->setMaschera("#,0.00");
    txtImporto->setReadOnly(true);
    txtImporto->setFocusPolicy(Qt::NoFocus);

    aggiungiCampo("Servizio", conImmagini(cbServizi, FabbricaEditorDi("frmServiziEdita")));
    aggiungiCampo(Q(core::Didascalia("s77")), txtDesc);
    aggiungiCampo("Riferimenti", txtRiferimenti);
    aggiungiCampo(Q(core::Didascalia("s275")), txtQuantita);
    aggiungiCampo(Q(core::Didascalia("s276")), txtPrezzo);
    aggiungiCampo(Q(core::Didascalia("s277")), txtSc1);
    aggiungiCampo(Q(core::Didascalia("s278")), txtSc2);
    aggiungiCampo("Importo", txtImporto);
    aggiungiCampo(Q(core::Didascalia("s127")), conImmagini(cbIva, FabbricaEditorDi("frmCodiciIvaEdita")));
    setMinimumWidth(520);

    for (ui::VText* t : {txtQuantita, txtPrezzo, txtSc1, txtSc2})
        connect(t, &QLineEdit::textChanged, this, [this] { ui::protetto([this] { CalcolaImporto(); }); });
    connect(cbServizi, &ui::VetraCombo::valoreCambiato, this, [this] {
        if (!caricamento_) ui::protetto([this] { ServizioScelto(); });
    });
}

void frmMovimentiEdita::CalcolaImporto() {
    const store::Value prezzo = store::Value::Text(txtPrezzo->testo());
    if (!store::IsNumeric(prezzo)) return;
    double importo = store::CDbl(prezzo) * store::CDbl(store::Value::Text(txtQuantita->testo()));
    if (importo == 0) {
        txtImporto->setTesto("0");
        return;
    }
    importo -= txtSc1->numero() * (importo / 100);
    importo -= txtSc2->numero() * (importo / 100);
    txtImporto->setTesto(store::NumberText(store::Round(importo, 2)));
}

long frmMovimentiEdita::documento() { return documentoDi(*this, "Movimenti"); }

// The catalogue fills the line; the first discount is the customer's, 0 for a supplier's document.
void frmMovimentiEdita::ServizioScelto() {
    txtDesc->setText(Q(store::ConcatText(cbServizi->campo("DescServizio"))));
    auto rs = core::ArchivioAperto()->OpenRecordset(
        "SELECT Documenti.ID, Clienti.Sconto1 FROM Documenti LEFT JOIN Clienti ON Documenti.Cliente = Clienti.ID "
        "WHERE Documenti.ID=" + std::to_string(documento()));
    testo(txtSc1, rs->Eof() ? store::Value::Null() : rs->get("Sconto1"));
    testo(txtSc2, cbServizi->campo("Sconto2"));
    testo(txtPrezzo, cbServizi->campo("CostoUnitario"));
    cbIva->setValore(store::Value::Long(static_cast<std::int32_t>(ui::IdDi(cbServizi->campo("CodiceIva")))));
}

void frmMovimentiEdita::DopoCarica() { caricamento_ = false; }

bool frmMovimentiEdita::Valida() {
    if (txtQuantita->text() == "0") {
        core::MsgBox("La quantità è uguale a zero!", core::vbExclamation);
        txtQuantita->setFocus();
        return false;
    }
    if (ui::IdDi(cbIva->valore()) == 0) {
        core::MsgBox("Inserire il codice iva !", core::vbExclamation);
        cbIva->setFocus();
        return false;
    }
    return true;
}

void frmMovimentiEdita::DopoSalvato(long) {
    if (!apertura().griglia) sales::CalcolaTotaliDocumento(documento());
}

frmSpeseDocumentiEdita::frmSpeseDocumentiEdita(QWidget* parent)
    : EditorBase(Nome, "SpeseDocumenti", core::Testo("s189"), parent),
      VText1(casella("VText1", "DescSpesa", this)),
      VText2(casella("VText2", "Imponibile", this, "0")),
      cbIva(comboIva(this)) {
    VText2->setMaschera("#,0.00");
    aggiungiCampo(Q(core::Didascalia("s77")), VText1);
    aggiungiCampo(Q(core::Didascalia("s126")), VText2);
    aggiungiCampo(Q(core::Didascalia("s127")), conImmagini(cbIva, FabbricaEditorDi("frmCodiciIvaEdita")));
    setMinimumWidth(420);
}

bool frmSpeseDocumentiEdita::Valida() {
    if (!richiesto(VText1, "s140")) return false;
    if (ui::IdDi(cbIva->valore()) == 0) {
        core::MsgBox(core::Testo("s292"), core::vbExclamation);
        cbIva->setFocus();
        return false;
    }
    return true;
}

void frmSpeseDocumentiEdita::DopoSalvato(long) {
    if (!apertura().griglia) sales::CalcolaTotaliDocumento(documentoDi(*this, "SpeseDocumenti"));
}

std::optional<long> NuovaRigaDocumento() {
    frmMovimentiEdita e;
    return e.Edita({Modalita::Nuovo, 0, nullptr, "Documento", core::ModoSchermo(frmMovimentiEdita::Nome)});
}

std::optional<long> NuovaSpesaDocumento() {
    frmSpeseDocumentiEdita e;
    return e.Edita({Modalita::Nuovo, 0, nullptr, "Documento", core::ModoSchermo(frmSpeseDocumentiEdita::Nome)});
}
