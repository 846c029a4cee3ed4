#include "sales/screens/frmDocumentiEdita.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPlainTextEdit>

#include "core/dialogs.h"
#include "core/documenti.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "core/registro_schermi.h"
#include "core/session.h"
#include "sales/controllo_documento.h"
#include "sales/numerazione.h"
#include "sales/totali.h"
#include "store/clock.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

long tipoAperto(const char* nome, long tipo, long predefinito) {
    if (tipo != 0) return tipo;
    const long modo = core::ModoSchermo(nome);
    return modo != 0 ? modo : predefinito;
}

ui::VText* percentuale(const char* nome, const char* campo, QWidget* parent) {
    auto* t = new ui::VText(parent);
    t->setObjectName(nome);
    t->setDataField(campo);
    t->setNumerico(true);
    t->setPredefinito("0");
    return t;
}

ui::VetraPicker* picker(const char* nome, const char* campo, QWidget* parent) {
    auto* p = new ui::VetraPicker(parent);
    p->setObjectName(nome);
    p->setDataField(campo);
    return p;
}

ui::VetraCombo* aperta(const char* nome, const char* campo, QWidget* parent) {
    auto* c = new ui::VetraCombo(parent);
    c->setObjectName(nome);
    c->setCampoDestinazione(campo);
    c->setAperta(true);
    return c;
}

void riempi(ui::VetraCombo* c, const std::vector<std::string>& voci) {
    const std::string testo = c->testo();
    c->pulisci();
    for (const std::string& v : voci) c->aggiungiVoce(store::Value::Text(v), v);
    c->setTesto(testo);
}

}  // namespace

frmDocumentiEditaBase::frmDocumentiEditaBase(const char* nome, bool fornitori, long tipo, QWidget* parent)
    : EditorBase(nome, "Documenti", core::TitoloTipoDocumento(tipo), parent),
      txtNum(new ui::VText(this)),
      cbPrefisso(aperta("cbPrefisso", "Prefisso", this)),
      cbSuffisso(aperta("cbSuffisso", "Suffisso", this)),
      pkData(picker("pkData", "Data", this)),
      pkDataReg(picker("pkDataReg", "DataRegistrazione", this)),
      cbClienti(new ui::VetraCombo(this)),
      cbPagamento(new ui::VetraCombo(this)),
      txtSconto1(percentuale("txtSconto1", "Sconto1", this)),
      txtSconto2(percentuale("txtSconto2", "Sconto2", this)),
      txtSconto3(percentuale("txtSconto3", "Sconto3", this)),
      txtSconto4(percentuale("txtSconto4", "Sconto4", this)),
      VText1(percentuale("VText1", "RitenutaAcconto", this)),
      VText2(percentuale("VText2", "Maggiorazione", this)),
      VText3(percentuale("VText3", "Colli", this)),
      VetraPicker1(picker("VetraPicker1", "DataScadAcconto", this)),
      Check1(new QCheckBox("Escludi dall'estratto conto", this)),
      Text1(new QPlainTextEdit(this)),
      fornitori_(fornitori),
      tipo_(tipo) {
    txtNum->setObjectName("txtNum");
    txtNum->setDataField("Numero");
    txtNum->setNumerico(true);
    txtNum->setCaratteriAmmessi("1234567890");

    cbClienti->setObjectName("cbClienti");
    cbClienti->setCampoDestinazione(fornitori ? "Fornitore" : "Cliente");
    const char* testo = fornitori ? "DescFornitore" : "Denominazione";
    cbClienti->setSorgente(fornitori ? "Select * from qrFornitori order by DescFornitore"
                                     : "Select * from qrClienti order by Denominazione");
    cbClienti->setCampoTesto(testo);
    cbClienti->setColonne({{testo, core::Testo("s101"), 1500},
                           {"Indirizzo", core::Testo("s102"), 1500},
                           {"Cap", core::Testo("s103"), 600},
                           {"Citta", core::Testo("s104"), 1500},
                           {"Provincia", core::Testo("s105"), 800},
                           {"Telefono", core::Testo("s200"), 1200},
                           {"Fax", core::Testo("s108"), 1200}});
    cbPagamento->setObjectName("cbPagamento");
    cbPagamento->setCampoDestinazione("CondizioniPagamento");
    cbPagamento->setSorgente("Select * from CondizioniPagamento order by DescPagamento");
    cbPagamento->setCampoTesto("DescPagamento");
    cbPagamento->setColonne({{"DescPagamento", core::Testo("s46"), 0}});

    Check1->setObjectName("Check1");
    Check1->setProperty("DataField", "EscludiEstrattoConto");
    Text1->setObjectName("Text1");
    Text1->setProperty("DataField", "Note");
    Text1->setTabChangesFocus(true);
    Text1->setFixedHeight(70);

    // Number, prefix and suffix on one row, as the document prints them.
    auto* numero = new QWidget(this);
    auto* ln = new QHBoxLayout(numero);
    ln->setContentsMargins(0, 0, 0, 0);
    ln->addWidget(cbPrefisso, 1);
    ln->addWidget(txtNum, 1);
    ln->addWidget(cbSuffisso, 1);
    auto* sconti = new QWidget(this);
    sconti->setObjectName("fmSconti");
    auto* ls = new QHBoxLayout(sconti);
    ls->setContentsMargins(0, 0, 0, 0);
    for (ui::VText* t : {txtSconto1, txtSconto2, txtSconto3, txtSconto4}) ls->addWidget(t);

    aggiungiCampo(Q(core::Didascalia("s287")), numero);
    aggiungiCampo(Q(core::Didascalia("s84")), pkData);
    aggiungiCampo("Data registrazione", pkDataReg);
    aggiungiCampo(fornitori ? "Fornitore" : "Cliente",
                  conImmagini(cbClienti, FabbricaEditorDi(fornitori ? "frmFornitoriEdita" : "frmClientiEdita")));
    aggiungiCampo("Pagamento", conImmagini(cbPagamento, FabbricaEditorDi("frmCondizioniPagamentoEdita")));
    aggiungiCampo("Sconti %", sconti);
    aggiungiCampo("Ritenuta d'acconto %", VText1);
    aggiungiCampo("Scad. Rit. Acconto", VetraPicker1);
    aggiungiCampo("Maggiorazione %", VText2);
    aggiungiCampo("Colli", VText3);
    aggiungiCampo("", Check1);
    aggiungiCampo("Note", Text1);
    setMinimumWidth(560);

    ui::protetto([this] {
        cbClienti->Aggiorna();
        cbPagamento->Aggiorna();
    });
    riempi(cbPrefisso, sales::CaricaPrefissi(tipo_));
    riempi(cbSuffisso, sales::CaricaSuffissi(tipo_));
    for (ui::VetraCombo* c : {cbPrefisso, cbSuffisso}) {
        connect(c, &QComboBox::currentTextChanged, this, [this] {
            if (!caricamento_) ui::protetto([this] { Rinumera(); });
        });
        connect(c, QOverload<int>::of(&QComboBox::activated), this, [this] {
            if (!caricamento_) ui::protetto([this] { Rinumera(); });
        });
    }
    connect(cbClienti, &ui::VetraCombo::valoreCambiato, this, [this] {
        if (!caricamento_) ui::protetto([this] { ControparteCambiata(); });
    });
}

void frmDocumentiEditaBase::Rinumera() {
    txtNum->setText(QString::number(sales::ProssimoNumeroDocumento(tipo_, cbPrefisso->testo(), cbSuffisso->testo())));
}

// A customer brings its payment terms, and its second discount as the document's first; a
// supplier brings nothing.
void frmDocumentiEditaBase::ControparteCambiata() {
    if (fornitori_) return;
    cbPagamento->setValore(cbClienti->campo("CondizioniPagamento"));
    if (txtSconto1->isVisible() || !isVisible()) {
        const store::Value sconto = cbClienti->campo("Sconto2");
        txtSconto1->setText(Q(store::NumberText(sconto.isNull() ? 0 : store::CDbl(sconto))));
    }
}

void frmDocumentiEditaBase::DopoCarica() {
    if (nuovo() && apertura().modalita == Modalita::Nuovo) {
        const store::Value oggi = store::Value::Date(store::Oggi());
        for (ui::VetraPicker* p : {pkData, pkDataReg, VetraPicker1}) p->setValore(oggi);
        cbPrefisso->setTesto("");
        cbSuffisso->setTesto("");
        Rinumera();
    }
    numeroAttuale_ = nuovo() ? 0 : txtNum->text().toLong();
    caricamento_ = false;
}

bool frmDocumentiEditaBase::Valida() {
    sales::TestataDaControllare t;
    t.tipo = tipo_;
    t.data = pkData->testo();
    t.controparte = ui::IdDi(cbClienti->valore());
    t.numero = txtNum->text().toLong();
    t.prefisso = cbPrefisso->testo();
    t.suffisso = cbSuffisso->testo();
    t.numeroAttuale = numeroAttuale_;
    t.controllaEsercizio = controllaEsercizio_;
    const sales::EsitoControllo esito = sales::ControllaTestataDocumento(t);
    if (t.numero != txtNum->text().toLong()) txtNum->setText(QString::number(t.numero));
    if (esito == sales::EsitoControllo::DataNonValida) pkData->casella()->setFocus();
    return esito == sales::EsitoControllo::Valido;
}

void frmDocumentiEditaBase::PrimaDiAggiornare(store::Recordset& rs) {
    rs.set("Tipo", store::Value::Long(static_cast<std::int32_t>(tipo_)));
}

// Discounts, surcharge and withholding of the header count at once.
void frmDocumentiEditaBase::DopoSalvato(long id) { sales::CalcolaTotaliDocumento(id); }

frmDocumentiEdita::frmDocumentiEdita(QWidget* parent, long tipo)
    : frmDocumentiEditaBase(Nome, false, tipoAperto(Nome, tipo, core::TipoFatturaEmessa), parent) {}

frmDocumentiFornitoriEdita::frmDocumentiFornitoriEdita(QWidget* parent, long tipo)
    : frmDocumentiEditaBase(Nome, true, tipoAperto(Nome, tipo, core::TipoNotaCreditoRicevuta), parent) {}
