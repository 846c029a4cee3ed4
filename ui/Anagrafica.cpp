#include "ui/CompletaComune.h"
#include "ui/Anagrafica.h"

#include <QBoxLayout>
#include <QDesktopServices>
#include <QFormLayout>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QUrl>

#include "core/impostazioni.h"
#include "core/dialogs.h"
#include "core/varie.h"
#include "store/convert.h"
#include "ui/Stile.h"
#include "ui/VBars.h"
#include "ui/VText.h"
#include "ui/VetraGrid.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

}  // namespace

namespace ui {

DefinizioneDettaglio SchedaSolaLettura(const char* nome, int diritto, std::function<std::string(long)> righe,
                                       std::string vuota, const core::TabellaCampi* campi,
                                       std::vector<std::string> colonne) {
    DefinizioneDettaglio d;
    d.nome = nome;
    d.righe = std::move(righe);
    d.vuota = std::move(vuota);
    d.campi = campi;
    d.colonne = std::move(colonne);
    d.diritti.vedere = diritto;
    return d;
}

}  // namespace ui

RegistroAnagrafica::RegistroAnagrafica(const char* nome, QWidget* parent) : RegistroBase(nome, parent) {}

long RegistroAnagrafica::idCorrente() const { return Grid->haRigaCorrente() ? Grid->idCorrente() : 0; }

void RegistroAnagrafica::Chiama(const char* campo) {
    if (!Grid->haRigaCorrente()) return;
    const QUrl link(Q("sip:" + store::ConcatText(Grid->valore(campo))));
    if (apriLink) apriLink(link);
    else QDesktopServices::openUrl(link);
}

void RegistroAnagrafica::costruisciSchede(const core::TabellaCampi& campi, const std::vector<ui::GruppoCampi>& gruppi) {
    ui::VBars* p = aggiungiPannello();
    for (const ui::GruppoCampi& gruppo : gruppi) {
        const int g = p->aggiungiGruppo(core::Didascalia(gruppo.titolo));
        for (const char* nome : gruppo.campi) {
            const core::Campo& c = campi[nome];
            p->aggiungiCampo(g, c.nome, core::Didascalia(c.didascalia), c.maschera);
        }
    }
    sTab = new QTabWidget(this);
    sTab->setObjectName("sTab");
    for (int i = 0; i < layout()->count(); ++i)
        if (auto* l = qobject_cast<QBoxLayout*>(layout()->itemAt(i)->layout()); l && l->indexOf(Grid) >= 0) {
            l->removeWidget(VisCampi);
            l->addWidget(sTab, 2);
        }
    sTab->addTab(VisCampi, Q(core::Testo("s142")));
}

ui::Dettaglio* RegistroAnagrafica::aggiungiScheda(const QString& titolo, const ui::DefinizioneDettaglio& definizione,
                                                  const std::function<QWidget*(ui::Dettaglio*)>& pagina) {
    ui::Dettaglio* d = aggiungiDettaglio(definizione);
    sTab->addTab(pagina ? pagina(d) : d, titolo);
    return d;
}

void RegistroAnagrafica::aggiungiChiamata() {
    btnChiama = aggiungiComando("btnChiama", "&Chiamata VoIP", 0, [this] {
        mTelefona->popup(btnChiama->mapToGlobal(QPoint(0, btnChiama->height())));
    });
    mTelefona = new QMenu(btnChiama);
    mTelefona->setObjectName("mTelefona");
    QAction* mSuTelefono = mTelefona->addAction("Su Telofono", this, [this] { Chiama("Telefono"); });
    mSuTelefono->setObjectName("mSuTelefono");
    QAction* mCellulare = mTelefona->addAction("Su Cellulare", this, [this] { Chiama("Cellulare"); });
    mCellulare->setObjectName("mCellulare");
}

EditorAnagrafica::EditorAnagrafica(const char* nome, std::string tabella, std::string titolo,
                                   const core::TabellaCampi& campi, const std::string& campoNome, QWidget* parent)
    : EditorBase(nome, std::move(tabella), std::move(titolo), parent), campi_(campi) {
    const std::string campoNome2 = campoNome + "2";
    VText1 = casella("VText1", campoNome.c_str());
    VText1->setMinimumWidth(480);
    aggiungiCampo(campi[campoNome], VText1);
    VText13 = casella("VText13", campoNome2.c_str());
    aggiungiCampo(campi[campoNome2], VText13);
    VText2 = casella("VText2", "Indirizzo");
    aggiungiCampo(campi["Indirizzo"], VText2);
    VText4 = casella("VText4", "Cap", 70);
    VText5 = casella("VText5", "Citta");
    txtProvincia = casella("txtProvincia", "Provincia", 50);
    aggiungiCampo(Q(core::Testo("s103")), riga({{"s103", VText4}, {"s104", VText5}, {"s105", txtProvincia}}));
    ui::CollegaComuni(VText5, VText4, txtProvincia);
    VText6 = casella("VText6", "PartitaIva", 160);
    VText7 = casella("VText7", "CodiceFiscale", 200);
    aggiungiCampo(Q(core::Testo("s106")), riga({{"s106", VText6}, {"s147", VText7}}));
    VText8 = casella("VText8", "Telefono", 160);
    VText9 = casella("VText9", "Cellulare", 160);
    VText10 = casella("VText10", "Fax", 160);
    aggiungiCampo(Q(core::Testo("s107")), riga({{"s107", VText8}, {"s146", VText9}, {"s108", VText10}}));
    VText11 = casella("VText11", "mail");
    VText12 = casella("VText12", "web");
    aggiungiCampo("E-mail", riga({{"E-mail", VText11}, {"Web", VText12}}));
}

void EditorAnagrafica::aggiungiBancaENote() {
    VText16 = casella("VText16", "Banca");
    aggiungiCampo(campi_["Banca"], VText16);
    VText17 = casella("VText17", "ABI", 70);
    VText18 = casella("VText18", "CAB", 70);
    VText22 = casella("VText22", "CIN", 40);
    VText19 = casella("VText19", "NumeroConto", 160);
    aggiungiCampo("ABI", riga({{"ABI", VText17}, {"CAB", VText18}, {"CIN", VText22}, {"Conto", VText19}}));
    Text1 = new QPlainTextEdit(this);
    Text1->setObjectName("Text1");
    Text1->setTabChangesFocus(true);
    Text1->setMaximumHeight(80);
    aggiungiCampo(campi_["Note"], Text1);
    setMinimumWidth(820);
}

bool EditorAnagrafica::nomeRichiesto(const std::string& messaggio) {
    if (!core::Trim(VText1->text().toStdString()).empty()) return true;
    core::MsgBox(messaggio, core::vbExclamation);
    VText1->setFocus();
    return false;
}

ui::VText* EditorAnagrafica::casella(const char* nome, const char* campo, int larghezza) {
    auto* t = new ui::VText(this);
    t->setObjectName(nome);
    t->setDataField(campo);
    if (larghezza) t->setMaximumWidth(larghezza);
    return t;
}

QWidget* EditorAnagrafica::riga(std::initializer_list<std::pair<const char*, QWidget*>> controlli) {
    auto* w = new QWidget(this);
    auto* l = new QHBoxLayout(w);
    l->setContentsMargins(0, 0, 0, 0);
    l->setSpacing(ui::Spaziatura);
    bool primo = true;
    for (const auto& [didascalia, c] : controlli) {
        if (!primo) {
            auto* e = new QLabel(Q(core::Didascalia(didascalia)), w);
            e->setBuddy(c);
            l->addWidget(e);
        }
        l->addWidget(c, c->maximumWidth() < QWIDGETSIZE_MAX ? 0 : 1);
        primo = false;
    }
    l->addStretch(0);
    return w;
}
