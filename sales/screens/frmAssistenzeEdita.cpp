#include "sales/screens/frmAssistenzeEdita.h"

#include <QApplication>
#include <QCheckBox>
#include <QFocusEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>

#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "sales/visite.h"
#include "store/clock.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraPicker.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

ui::VText* numero(const char* nome, const char* campo, QWidget* parent) {
    auto* t = new ui::VText(parent);
    t->setObjectName(nome);
    t->setDataField(campo);
    t->setPredefinito("0");
    t->setCaratteriAmmessi("1234567890.");
    t->setMaximumWidth(90);
    return t;
}

ui::VetraCombo* combo(const char* nome, const char* campo, const char* sorgente, const char* testo, QWidget* parent) {
    auto* c = new ui::VetraCombo(parent);
    c->setObjectName(nome);
    c->setCampoDestinazione(campo);
    c->setSorgente(sorgente);
    c->setCampoTesto(testo);
    c->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return c;
}

}  // namespace

frmAssistenzeEdita::frmAssistenzeEdita(QWidget* parent)
    : EditorBase(Nome, "Assistenze", core::Testo("s91"), parent),
      pkData(new ui::VetraPicker(this)),
      cbClienti(combo("cbClienti", "Cliente", "Select * from Clienti order by DescCliente", "DescCliente", this)),
      cbServizi(combo("cbServizi", "Servizio", "Select * from Servizi order by DescServizio", "DescServizio", this)),
      VText2(numero("VText2", "OraInizio", this)),
      VText3(numero("VText3", "OraFine", this)),
      VText1(numero("VText1", "Km", this)),
      Check1(new QCheckBox("Fatturare", this)),
      Text1(new QPlainTextEdit(this)) {
    pkData->setObjectName("pkData");
    pkData->setDataField("Data");
    cbClienti->setColonne({{"DescCliente", core::Testo("s101"), 2400}});
    cbServizi->setColonne({{"DescServizio", core::Testo("s39"), 1500}, {"CodiceInterno", "Codice", 1500}});
    ui::protetto([this] {
        cbClienti->Aggiorna();
        cbServizi->Aggiorna();
    });
    // Kilometres are a number; the point typed is its decimal comma.
    VText1->setNumerico(true);
    VText1->setCaratteriAmmessi("1234567890.,");
    VText1->setPuntoDecimale(true);
    for (ui::VText* ora : {VText2, VText3}) {
        ora->setToolTip("Un orario, per esempio 14.30");
        ora->installEventFilter(this);
    }
    Check1->setObjectName("Check1");
    Check1->setProperty("DataField", "Fattura");
    Text1->setObjectName("Text1");
    Text1->setProperty("DataField", "Note");
    Text1->setTabChangesFocus(true);
    Text1->setFixedHeight(80);

    auto* orari = new QWidget(this);
    auto* lo = new QHBoxLayout(orari);
    lo->setContentsMargins(0, 0, 0, 0);
    lo->setSpacing(ui::Spaziatura);
    lo->addWidget(VText2);
    auto* lblFine = new QLabel("Ora &Fine", orari);
    lblFine->setBuddy(VText3);
    lo->addWidget(lblFine);
    lo->addWidget(VText3);
    auto* lblKm = new QLabel("&Km Percorsi", orari);
    lblKm->setBuddy(VText1);
    lo->addWidget(lblKm);
    lo->addWidget(VText1);
    lo->addStretch(1);

    aggiungiCampo("&Data", pkData);
    aggiungiCampo("C&liente", cbClienti);
    aggiungiCampo("&Servizio", cbServizi);
    aggiungiCampo("Ora &Inizio", orari);
    aggiungiCampo("", Check1);
    aggiungiCampo("&Note", Text1);
    setMinimumWidth(560);
    setTabOrder(pkData, cbClienti);
    setTabOrder(cbClienti, cbServizi);
    setTabOrder(cbServizi, VText2);
    setTabOrder(VText2, VText3);
    setTabOrder(VText3, VText1);
    setTabOrder(VText1, Check1);
    setTabOrder(Check1, Text1);
}

// Leaving a time box with a text that is no time is refused, and the focus stays. Going to Annulla
// or to another window is not leaving it; going to Conferma leaves the check to the confirm.
bool frmAssistenzeEdita::eventFilter(QObject* oggetto, QEvent* evento) {
    if (evento->type() == QEvent::FocusOut && (oggetto == VText2 || oggetto == VText3)) {
        const auto motivo = static_cast<QFocusEvent*>(evento)->reason();
        auto* ora = static_cast<ui::VText*>(oggetto);
        const std::string testo = ora->text().toStdString();
        const bool lasciato = motivo == Qt::TabFocusReason || motivo == Qt::BacktabFocusReason ||
                              motivo == Qt::MouseFocusReason || motivo == Qt::ShortcutFocusReason;
        const QWidget* verso = QApplication::focusWidget();
        if (lasciato && verso != btnAnnulla && verso != btnConferma && !sales::OraVuota(testo) &&
            !sales::OraVisita(testo)) {
            core::MsgBox(core::Testo("s92"), core::vbExclamation);
            QTimer::singleShot(0, ora, [ora] {
                ora->setFocus();
                ora->selectAll();
            });
        }
    }
    return EditorBase::eventFilter(oggetto, evento);
}

void frmAssistenzeEdita::DopoCarica() {
    setWindowTitle(Q(core::Testo(nuovo() ? "s91" : "s90")));
    if (apertura().modalita != Modalita::Nuovo) return;
    pkData->setValore(store::Value::Date(store::Oggi()));
    if (apertura().idPadre != 0) cbClienti->setValore(store::Value::Long(static_cast<std::int32_t>(apertura().idPadre)));
}

bool frmAssistenzeEdita::Valida() {
    auto avvisa = [](const std::string& testo, QWidget* dove) {
        core::MsgBox(testo, core::vbExclamation);
        dove->setFocus();
        return false;
    };
    if (!pkData->dataValida()) return avvisa(core::Testo("s81"), pkData->casella());
    if (ui::IdDi(cbClienti->valore()) == 0) return avvisa(core::Testo("s213"), cbClienti);
    switch (sales::ControllaOrari(VText2->text().toStdString(), VText3->text().toStdString())) {
        case sales::EsitoOrari::InizioNonValido: return avvisa(core::Testo("s92"), VText2);
        case sales::EsitoOrari::FineNonValida: return avvisa(core::Testo("s92"), VText3);
        case sales::EsitoOrari::FinePrimaDellInizio: return avvisa(sales::MsgFinePrimaDellInizio, VText3);
        case sales::EsitoOrari::Validi: break;
    }
    return true;
}

// The customer chosen in the combo, even on a visit added from a customer's list.
void frmAssistenzeEdita::PrimaDiAggiornare(store::Recordset& rs) { rs.set("Cliente", cbClienti->valore()); }
