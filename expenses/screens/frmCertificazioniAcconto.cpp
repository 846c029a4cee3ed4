#include "expenses/screens/frmCertificazioniAcconto.h"

#include <QCheckBox>
#include <QColor>
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

#include "core/impostazioni.h"
#include "core/stampa.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

namespace {

// The choice of OpRicevute in its order, as the criteria keep it: both, received, not received.
constexpr int kStati[] = {2, 1, 0};

}  // namespace

frmCertificazioniAcconto::frmCertificazioniAcconto(QWidget* parent) : RegistroBase(Nome, parent) {
    Definizione d;
    d.titolo = "Certificazioni ritenute d'acconto";
    d.sorgente = expenses::IstruzioneCertificazioni(Criteri);
    d.ordinamento = "DataScadAcconto";
    d.campi = &expenses::CampiCertificazioni();
    d.colonne = {"DataScadAcconto",    "Numero",        "Data",           "Denominazione",
                 "RitenutaAcconto", "TotRitenutaAcconto", "ImportoTotale", "DescCertAcconto"};
    d.ricerca = {"Denominazione", "Numero"};
    // A certificate still to receive stands out.
    d.colori = {{"CertAcconto", [](const store::Value& v) { return v.isNull() || !store::CBool(v); },
                 QColor(Qt::darkRed), QColor(Qt::white)}};
    // The rows are the documents': no new, change or delete from here.
    for (QPushButton* b : {btnNuovo, btnModifica, btnElimina}) b->hide();
    aggiungiComando("btnRicevuta", "Imposta come ricevuta", 0, [this] { Ricevuta(); });
    aggiungiComando("btnStampa", "Stampa", 0, [this] { StampaCertificazione(); });
    aggiungiComando("btnRicerca", "Ricerc&a... (F3)", 0, [this] { CercaCertificazioni(); });
    aggiungiComando("Command1", "&Seleziona tutto", 0, [this] { SelezionaTutto(); });
    resize(1100, 600);
    carica(std::move(d));
}

// Through the grid's own row, which shows the new state at once.
void frmCertificazioniAcconto::Ricevuta() {
    if (!Grid->haRigaCorrente()) return;
    expenses::InvertiRicevuta(*Grid->Recordset());
    Grid->AggiornaRiga();
}

void frmCertificazioniAcconto::StampaCertificazione() {
    if (!Grid->haRigaCorrente()) return;
    core::Stampa(expenses::StampaCertificazione(Grid->idCorrente()));
}

void frmCertificazioniAcconto::SelezionaTutto() {
    Criteri = expenses::CriteriCertificazioni{};
    txtCerca->clear();
    Grid->setSorgente(expenses::IstruzioneCertificazioni(Criteri));
    Grid->Aggiorna();
}

void frmCertificazioniAcconto::CercaCertificazioni() {
    frmCertificazioniAccontoCerca cerca(Criteri, this);
    const auto criteri = cerca.Cerca();
    if (!criteri) return;
    Criteri = *criteri;
    Grid->setSorgente(expenses::IstruzioneCertificazioni(Criteri));
    Grid->Aggiorna();
}

frmCertificazioniAccontoCerca::frmCertificazioniAccontoCerca(const expenses::CriteriCertificazioni& criteri,
                                                             QWidget* parent)
    : ui::DialogoCerca(Nome, "Ricerca certificazioni", "T&rova", parent), criteri_(criteri) {
    chkDataDal = spunta("chkDataDal", "Scadenze &dal", criteri.dataDal);
    pkDataDal = data("pkDataDal", criteri.dal);
    chkDataAl = spunta("chkDataAl", "Scadenze a&l", criteri.dataAl);
    pkDataAl = data("pkDataAl", criteri.al);
    chkDest = spunta("chkDest", "&Cliente", criteri.cliente);
    cbDest = new ui::VetraCombo(this);
    cbDest->setObjectName("cbDest");
    cbDest->setSorgente("Select * from qrClienti");
    cbDest->setCampoTesto("Denominazione");
    cbDest->setColonne({{"Denominazione", core::Testo("s101"), 3000},
                        {"Indirizzo", core::Testo("s102"), 2400},
                        {"Cap", core::Testo("s103"), 700},
                        {"Citta", core::Testo("s104"), 1800},
                        {"Provincia", core::Testo("s105"), 500}});
    ui::protetto([this] { cbDest->Aggiorna(); });
    cbDest->setValore(store::Value::Long(static_cast<std::int32_t>(criteri.idCliente)));
    OpRicevute = new QComboBox(this);
    OpRicevute->setObjectName("OpRicevute");
    OpRicevute->addItems({"Entrambe", "Ricevute", "Da ricevere"});
    OpRicevute->setCurrentIndex(criteri.stato == 1 ? 1 : criteri.stato == 0 ? 2 : 0);

    QFormLayout* campi = campiRicerca();
    campi->addRow(chkDataDal, pkDataDal);
    campi->addRow(chkDataAl, pkDataAl);
    campi->addRow(chkDest, cbDest);
    campi->addRow("&Stato", OpRicevute);
    Command2->setText("A&nnulla");
    setMinimumWidth(480);
}

bool frmCertificazioniAccontoCerca::Conferma() {
    if (!ui::DataSpuntataValida(chkDataDal, pkDataDal) || !ui::DataSpuntataValida(chkDataAl, pkDataAl)) return false;
    expenses::CriteriCertificazioni c;
    c.dataDal = chkDataDal->isChecked();
    c.dataAl = chkDataAl->isChecked();
    c.dal = pkDataDal->testo();
    c.al = pkDataAl->testo();
    c.cliente = chkDest->isChecked();
    c.idCliente = ui::IdDi(cbDest->valore());
    c.stato = kStati[OpRicevute->currentIndex()];
    criteri_ = c;
    return true;
}

std::optional<expenses::CriteriCertificazioni> frmCertificazioniAccontoCerca::Cerca() {
    if (!Esegui()) return std::nullopt;
    return criteri_;
}
