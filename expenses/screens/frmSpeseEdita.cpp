#include "expenses/screens/frmSpeseEdita.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>

#include "core/archivio_sql.h"
#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "expenses/spese.h"
#include "expenses/totali_spesa.h"
#include "sales/numerazione.h"
#include "store/clock.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraPicker.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

ui::VetraCombo* combo(const char* nome, const char* campo, const std::string& sorgente,
                      std::vector<ui::VetraCombo::ColonnaLista> colonne, QWidget* parent) {
    auto* c = new ui::VetraCombo(parent);
    c->setObjectName(nome);
    c->setCampoDestinazione(campo);
    c->setSorgente(sorgente);
    c->setCampoTesto(colonne.front().campo);
    c->setColonne(std::move(colonne));
    ui::protetto([c] { c->Aggiorna(); });
    return c;
}

// An amount: digits, sign, comma or the keypad's point as the decimal comma; shown to the cent.
ui::VText* importo(const char* nome, const char* campo, QWidget* parent) {
    auto* t = new ui::VText(parent);
    t->setObjectName(nome);
    t->setDataField(campo);
    t->setNumerico(true);
    t->setCaratteriAmmessi("1234567890.,-");
    t->setPuntoDecimale(true);
    t->setPredefinito("0");
    return t;
}

}  // namespace

frmSpeseEdita::frmSpeseEdita(QWidget* parent)
    : EditorBase(Nome, "Spese", core::Testo("s29"), parent),
      pkData(new ui::VetraPicker(this)),
      txtNum(new ui::VText(this)),
      cbFornitore(combo("cbFornitore", "Fornitore", "Select * from Fornitori order by DescFornitore",
                        {{"DescFornitore", core::Testo("s101"), 2400},
                         {"Indirizzo", core::Testo("s102"), 1800},
                         {"Cap", core::Testo("s103"), 600},
                         {"Citta", core::Testo("s104"), 1400},
                         {"Provincia", core::Testo("s105"), 500},
                         {"Telefono", core::Testo("s200"), 1200},
                         {"Fax", core::Testo("s108"), 1200}},
                        this)),
      cbTipoSpesa(combo("cbTipoSpesa", "TipoSpesa", "Select * from TipiSpesa order by DescTipoSpesa",
                        {{"DescTipoSpesa", core::Testo("s77"), 2400}}, this)),
      cbClassificazione(combo("cbClassificazione", "Classificazione",
                              "Select * from ClassificazioniSpese order by DescClassificazione",
                              {{"DescClassificazione", core::Testo("s77"), 2400}}, this)),
      cbPagamento(combo("cbPagamento", "CondizioniPagamento", "Select * from CondizioniPagamento order by DescPagamento",
                        {{"DescPagamento", core::Testo("s46"), 2400}}, this)),
      VText1(new ui::VText(this)),
      txtFile(new ui::VText(this)),
      Command1(new QPushButton("&Sfoglia...", this)),
      Check1(new QCheckBox("Escludi dall'estratto conto", this)),
      Text1(new QPlainTextEdit(this)) {
    pkData->setObjectName("pkData");
    pkData->setDataField("Data");
    pkData->setMaximumWidth(170);
    txtNum->setObjectName("txtNum");
    txtNum->setDataField("Numero");
    txtNum->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    txtNum->setPredefinito("0");
    txtNum->setMaximumWidth(160);
    VText1->setObjectName("VText1");
    VText1->setDataField("RitenutaAcconto");
    VText1->setNumerico(true);
    VText1->setPuntoDecimale(true);
    VText1->setPredefinito("0");
    VText1->setMaximumWidth(80);
    txtFile->setObjectName("txtFile");
    txtFile->setDataField("File");
    txtFile->setReadOnly(true);
    Command1->setObjectName("Command1");
    Check1->setObjectName("Check1");
    Check1->setProperty("DataField", "EscludiEstrattoConto");
    Text1->setObjectName("Text1");
    Text1->setProperty("DataField", "Note");
    Text1->setTabChangesFocus(true);
    Text1->setFixedHeight(80);

    auto* file = new QWidget(this);
    auto* lf = new QHBoxLayout(file);
    lf->setContentsMargins(0, 0, 0, 0);
    lf->addWidget(txtFile, 1);
    lf->addWidget(Command1);

    aggiungiCampo(Q(core::Didascalia("s84")), pkData);
    aggiungiCampo(Q(core::Didascalia("s287")), txtNum);
    aggiungiCampo(Q(core::Didascalia("s41")), conImmagini(cbFornitore, FabbricaEditorDi("frmFornitoriEdita")));
    aggiungiCampo("Tipologia", conImmagini(cbTipoSpesa, FabbricaEditorDi("frmTipiSpesaEdita")));
    aggiungiCampo(Q(core::Didascalia("s157")), conImmagini(cbClassificazione, FabbricaEditorDi("frmClassificazioniSpeseEdita")));
    aggiungiCampo(Q(core::Didascalia("s46")), conImmagini(cbPagamento, FabbricaEditorDi("frmCondizioniPagamentoEdita")));
    aggiungiCampo("Ritenuta d'Acconto", VText1);
    aggiungiCampo("File collegato", file);
    aggiungiCampo("", Check1);
    aggiungiCampo(Q(core::Didascalia("s20")), Text1);
    setMinimumWidth(620);
    connect(Command1, &QPushButton::clicked, this, [this] { ui::protetto([this] { Sfoglia(); }); });
}

void frmSpeseEdita::Sfoglia() {
    const std::optional<std::string> file = core::dialogs().chooseFile("Sfoglia", "Tutti i file (*.*)", false, txtFile->testo());
    if (file) txtFile->setText(Q(*file));
}

// A new expense is dated today with the next number; a copy keeps what it copied.
void frmSpeseEdita::DopoCarica() {
    if (apertura().modalita != Modalita::Nuovo) return;
    pkData->setValore(store::Value::Date(store::Oggi()));
    txtNum->setText(QString::number(sales::ProssimoNumeroSpesa()));
}

bool frmSpeseEdita::Valida() {
    expenses::TestataSpesa t;
    t.data = pkData->testo();
    t.numero = txtNum->testo();
    t.fornitore = ui::IdDi(cbFornitore->valore());
    t.nuova = nuovo();
    switch (expenses::ControllaTestataSpesa(t)) {
        case expenses::EsitoSpesa::Valida: return true;
        case expenses::EsitoSpesa::SenzaFornitore: cbFornitore->setFocus(); break;
        case expenses::EsitoSpesa::Duplicata: txtNum->setFocus(); break;
        default: pkData->casella()->setFocus(); break;
    }
    return false;
}

// A changed withholding reaches the amount of the expense.
void frmSpeseEdita::DopoSalvato(long id) { expenses::CalcolaTotaliSpesa(id); }

frmSpeseMovEdita::frmSpeseMovEdita(QWidget* parent)
    : EditorBase(Nome, "MovimentiSpese", core::Testo("s144"), parent),
      txtDesc(new ui::VText(this)),
      txtImporto(importo("txtImporto", "Importo", this)),
      cbIva(combo("cbIva", "Iva", "Select * from CodiciIva order by DescIva",
                  {{"DescIva", core::Testo("s77"), 1800}, {"AliquotaIva", core::Testo("s190"), 900}}, this)),
      btnScorpora(new QPushButton("Sc&orpora Iva", this)) {
    txtDesc->setObjectName("txtDesc");
    txtDesc->setDataField("DescMovimento");
    txtDesc->setMinimumWidth(420);
    txtImporto->setMaschera("#,0.00");
    txtImporto->setMaximumWidth(140);
    btnScorpora->setObjectName("btnScorpora");
    auto* iva = new QWidget(this);
    auto* li = new QHBoxLayout(iva);
    li->setContentsMargins(0, 0, 0, 0);
    li->addWidget(conImmagini(cbIva, FabbricaEditorDi("frmCodiciIvaEdita")), 1);
    li->addWidget(btnScorpora);
    aggiungiCampo(Q(core::Didascalia("s77")), txtDesc);
    aggiungiCampo(Q(core::Didascalia("s171")), txtImporto);
    aggiungiCampo(Q(core::Didascalia("s190")), iva);
    setMinimumWidth(560);
    connect(btnScorpora, &QPushButton::clicked, this, [this] { ui::protetto([this] { Scorpora(); }); });
    connect(cbIva, &ui::VetraCombo::valoreCambiato, this, [this] { btnScorpora->setEnabled(ui::IdDi(cbIva->valore()) != 0); });
}

void frmSpeseMovEdita::Scorpora() {
    const double aliquota = core::NumeroOZero(cbIva->campo("AliquotaIva"));
    // The full number goes in the box; the mask rounds it to the cent only when the box is left.
    txtImporto->setText(Q(store::NumberText(expenses::Scorpora(txtImporto->numero(), aliquota))));
}

void frmSpeseMovEdita::DopoCarica() { btnScorpora->setEnabled(ui::IdDi(cbIva->valore()) != 0); }

long frmSpeseMovEdita::spesa() const {
    if (nuovo()) return apertura().idPadre;
    auto rs = core::Apri("Select Spesa from MovimentiSpese where ID=" + std::to_string(id()));
    return rs->Eof() ? 0 : ui::IdDi(rs->get("Spesa"));
}

// From a list, its holder brings the totals up to date; opened alone, the editor does.
void frmSpeseMovEdita::DopoSalvato(long) {
    if (!apertura().griglia) expenses::CalcolaTotaliSpesa(spesa());
}

std::optional<long> NuovaRigaSpesa() {
    frmSpeseMovEdita e;
    return e.Edita({Modalita::Nuovo, 0, nullptr, "Spesa", core::ModoSchermo(frmSpeseMovEdita::Nome)});
}
