#include "payments/screens/frmScadenzeEdita.h"

#include <QLabel>

#include <tuple>

#include "core/archivio_sql.h"
#include "core/dialogs.h"
#include "core/documenti.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "payments/screens/Cifra.h"
#include "store/convert.h"
#include "store/format.h"
#include "ui/Dialoghi.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraPicker.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

QString Importo(double d) { return Q(store::Format(store::Value::Double(d), "#,0.00")); }

ui::VText* numero(const char* nome, const char* campo, QWidget* parent) {
    auto* t = new ui::VText(parent);
    t->setObjectName(nome);
    t->setDataField(campo);
    t->setNumerico(true);
    t->setCaratteriAmmessi("0123456789");
    t->setPredefinito("0");
    t->setMaximumWidth(80);
    return t;
}

}  // namespace

frmScadenzeEdita::frmScadenzeEdita(QWidget* parent) : frmScadenzeEdita(Nome, false, parent) {}

frmScadenzeEdita::frmScadenzeEdita(const char* nome, bool spesa, QWidget* parent)
    : EditorBase(nome, "Scadenze", "Scadenza", parent),
      cbCliente(new ui::VetraCombo(this)),
      cbFornitore(new ui::VetraCombo(this)),
      cbDocumenti(new ui::VetraCombo(this)),
      lblPagato(cifra("lblPagato", this)),
      lblDaPagare(cifra("lblDaPagare", this)),
      txtDescrizione(new ui::VText(this)),
      pkData(new ui::VetraPicker(this)),
      txtImporto(new ui::VText(this)),
      txtRata(numero("txtRata", "Rata", this)),
      txtRate(numero("txtRate", "Rate", this)),
      pkAvviso(new ui::VetraPicker(this)),
      spesa_(spesa),
      campoScelto_(spesa ? "Spesa" : "Documento") {
    for (auto [p, nome, campo] : {std::tuple{pkData, "pkData", "DataScadenza"}, {pkAvviso, "pkAvviso", "DataAvviso"}}) {
        p->setObjectName(nome);
        p->setDataField(campo);
    }
    cbCliente->setObjectName("cbCliente");
    cbCliente->setCampoDestinazione("Cliente");
    cbCliente->setSorgente("Select * from qrClienti Order by DescCliente");
    cbCliente->setCampoTesto("Denominazione");
    cbCliente->setColonne({{"Denominazione", core::Testo("s101"), 3000}});
    cbFornitore->setObjectName("cbFornitore");
    cbFornitore->setCampoDestinazione("Fornitore");
    cbFornitore->setSorgente("Select * from Fornitori Order By DescFornitore");
    cbFornitore->setCampoTesto("DescFornitore");
    cbFornitore->setColonne({{"DescFornitore", "Fornitore", 3000}});
    // The document is written by the screen itself: its list depends on how the screen was opened.
    cbDocumenti->setObjectName("cbDocumenti");
    cbDocumenti->setCampoTesto("DescDocumento");
    cbDocumenti->setColonne({{"DescDocumento", "Documento", 3000},
                             {"Data", core::Testo("s84"), 1100, "dd/mm/yyyy"},
                             {"Numero", core::Testo("s287"), 700},
                             {spesa_ ? "ImportoSpesa" : "ImportoTotale", core::Testo("s171"), 1200, "#,0.00"}});
    txtDescrizione->setObjectName("txtDescrizione");
    txtDescrizione->setDataField("DescScadenza");
    txtImporto->setObjectName("txtImporto");
    txtImporto->setDataField("ImportoScadenza");
    txtImporto->setNumerico(true);
    txtImporto->setMaschera("#,0.00");
    txtImporto->setAlignment(Qt::AlignRight);
    txtImporto->setMaximumWidth(140);
    txtImporto->setPredefinito("0");

    for (ui::VetraCombo* c : {cbCliente, cbFornitore, cbDocumenti})
        c->setSizePolicy(QSizePolicy::Expanding, c->sizePolicy().verticalPolicy());
    if (spesa_) cbCliente->hide();
    else aggiungiCampo("Cliente", cbCliente);
    aggiungiCampo("Fornitore", cbFornitore);
    aggiungiCampo(spesa_ ? "Spesa" : "Documento", cbDocumenti);
    aggiungiCampo("Già scadenzato", lblPagato);
    aggiungiCampo("Da scadenzare", lblDaPagare);
    aggiungiCampo(Q(core::Testo("s178")), txtDescrizione);
    aggiungiCampo(Q(core::Testo("s179")), pkData);
    aggiungiCampo(Q(core::Testo("s180")), txtImporto);
    aggiungiCampo(Q(core::Testo("s198")), txtRata);
    aggiungiCampo(Q(core::Testo("s199")), txtRate);
    aggiungiCampo("Data avviso", pkAvviso);
    setMinimumWidth(560);

    ui::protetto([this] {
        cbCliente->Aggiorna();
        cbFornitore->Aggiorna();
    });
    connect(cbDocumenti, &ui::VetraCombo::valoreCambiato, this, [this] {
        if (!caricamento_) ui::protetto([this] { DocumentoCambiato(true); });
    });
    connect(cbCliente, &ui::VetraCombo::valoreCambiato, this, [this] {
        if (!caricamento_) ui::protetto([this] { ControparteCambiata("Cliente", cbCliente); });
    });
    connect(cbFornitore, &ui::VetraCombo::valoreCambiato, this, [this] {
        if (!caricamento_) ui::protetto([this] { ControparteCambiata("Fornitore", cbFornitore); });
    });
    connect(txtImporto, &QLineEdit::textEdited, this, [this] {
        if (!caricamento_) ui::protetto([this] { Descrivi(); });
    });
}

// Opened on a document, the side is the document's: money coming in lists the customers' side.
// Opened alone, the screen's mode says it (1 the suppliers' side). An expense is the suppliers'.
void frmScadenzeEdita::DopoCarica() {
    caricamento_ = true;
    long documento = 0;
    if (apertura().campoPadre == campoScelto_) documento = apertura().idPadre;
    if (!nuovo()) {
        const std::string campo = campoScelto_;
        documento = ui::IdDi(core::Apri("Select " + campo + " from Scadenze where ID=" + std::to_string(id()))->get(campo));
    }
    if (spesa_) latoFornitori_ = true;
    else latoFornitori_ = documento > 0 ? !core::TipoAttivo(core::TipoDocumento(documento)) : core::ModoSchermo(Nome) == 1;
    cbDocumenti->setSorgente(spesa_ ? payments::ListaSpeseScadenze(nuovo())
                                    : payments::ListaDocumentiScadenze(nuovo(), latoFornitori_));
    cbDocumenti->Aggiorna();
    cbDocumenti->setValore(store::Value::Long(static_cast<std::int32_t>(documento)));
    DocumentoCambiato(nuovo());
    caricamento_ = false;
}

void frmScadenzeEdita::DocumentoCambiato(bool proponi) {
    const bool scelto = ui::IdDi(cbDocumenti->valore()) != 0;
    scelto_ = {};
    if (scelto) {
        scelto_.scadenze = store::Round(core::NumeroOZero(cbDocumenti->campo("ImportoScadenze")), 2);
        scelto_.rimanente = store::Round(core::NumeroOZero(cbDocumenti->campo("Rimanente")), 2);
        scelto_.descrizione = store::ConcatText(cbDocumenti->campo("DescDocumento"));
        const bool prima = caricamento_;
        caricamento_ = true;
        cbCliente->setValore(cbDocumenti->campo("Cliente"));
        cbFornitore->setValore(cbDocumenti->campo("Fornitore"));
        caricamento_ = prima;
    }
    lblPagato->setText(Importo(scelto_.scadenze));
    lblDaPagare->setText(Importo(scelto_.rimanente));
    if (!proponi) return;
    if (scelto) txtImporto->setTesto(store::NumberText(scelto_.rimanente));
    Descrivi();
}

void frmScadenzeEdita::Descrivi() {
    if (ui::IdDi(cbDocumenti->valore()) == 0) {
        txtDescrizione->clear();
        return;
    }
    txtDescrizione->setText(Q(payments::DescrizioneScadenza(txtImporto->numero(), scelto_, !nuovo())));
}

// A counterpart picked narrows the documents to its own.
void frmScadenzeEdita::ControparteCambiata(const char* campo, ui::VetraCombo* combo) {
    caricamento_ = true;
    cbDocumenti->setSorgente(spesa_ ? payments::ListaSpeseDi(ui::IdDi(combo->valore()), nuovo())
                                    : payments::ListaDocumentiDi(campo, ui::IdDi(combo->valore()), nuovo()));
    cbDocumenti->Aggiorna();
    caricamento_ = false;
    DocumentoCambiato(false);
}

bool frmScadenzeEdita::Valida() {
    payments::ScadenzaDaControllare s;
    s.dataVuota = pkData->vuoto();
    s.dataValida = pkData->dataValida();
    s.cliente = ui::IdDi(cbCliente->valore());
    s.fornitore = ui::IdDi(cbFornitore->valore());
    s.documento = ui::IdDi(cbDocumenti->valore());
    s.importo = txtImporto->numero();
    s.scelto = scelto_;
    s.modifica = !nuovo();
    s.spesa = spesa_;
    const std::string chiave = payments::ControllaScadenza(s);
    if (chiave.empty()) return true;
    core::MsgBox(core::Testo(chiave), core::vbExclamation);
    if (chiave == "s219" || chiave == "s220") pkData->casella()->setFocus();
    else if (chiave == "s241" || chiave == "s242") txtImporto->setFocus();
    else if (chiave == "s222" || chiave == "s230") cbDocumenti->setFocus();
    else if (spesa_) cbFornitore->setFocus();
    else cbCliente->setFocus();
    return false;
}

void frmScadenzeEdita::PrimaDiAggiornare(store::Recordset& rs) {
    rs.set(campoScelto_, store::Value::Long(static_cast<std::int32_t>(ui::IdDi(cbDocumenti->valore()))));
}
