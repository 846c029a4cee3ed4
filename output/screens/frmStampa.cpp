#include "output/screens/frmStampa.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <filesystem>

#include "core/dialogs.h"
#include "core/file.h"
#include "core/impostazioni.h"
#include "core/session.h"
#include "core/varie.h"
#include "output/formreport.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VetraCombo.h"
#include "ui/report/EditorReport.h"

namespace {

namespace fs = std::filesystem;

// The report's errors and the statements' alike: number and text joined by "; ", and the screen stays.
void eseguiMostrandoErrori(const std::function<void()>& comando) {
    try {
        comando();
    } catch (const store::JetError& e) {
        core::MsgBox(std::to_string(e.number()) + "; " + e.what(), core::vbExclamation);
    }
}

}  // namespace

void MostraStampa(const core::RichiestaStampa& richiesta) {
    frmStampa f(ui::finestraPrincipale());
    if (!ui::protetto([&] { f.Edita(richiesta); })) return;
    ui::eseguiModale(&f, [&] { return f.exec() == QDialog::Accepted; });
}

frmStampa::frmStampa(QWidget* parent) : QDialog(parent) {
    setObjectName(Nome);
    setWindowTitle("Stampa");
    setWindowIcon(ui::iconaComando("btnStampa"));

    auto* griglia = new QGridLayout(this);
    ui::impostaSpaziatura(griglia);
    auto* etichetta = new QLabel("&Report", this);
    VetraCombo1 = new ui::VetraCombo(this);
    VetraCombo1->setObjectName("VetraCombo1");
    VetraCombo1->setMinimumWidth(280);
    etichetta->setBuddy(VetraCombo1);
    griglia->addWidget(etichetta, 0, 0);
    griglia->addWidget(VetraCombo1, 1, 0);

    btnAnteprima = ui::comando("btnAnteprima", "&Anteprima", this);
    btnAnteprima->setIcon(ui::icona("document-print-preview"));
    btnAnteprima->setDefault(true);
    btnModifica = ui::comando("btnModifica", "&Modifica", this);
    btnDuplica = ui::comando("btnDuplica", "&Duplica", this);
    btnDuplica->setIcon(ui::icona("edit-copy"));
    btnElimina = ui::comando("btnElimina", "&Elimina", this);
    btnPredefinito = ui::comando("btnPredefinito", "&Predefinito", this);
    btnPredefinito->setIcon(ui::icona("emblem-default"));
    btnAnnulla = ui::comando("btnAnnulla", "Annu&lla", this);
    auto* comandi = new QVBoxLayout;
    for (QPushButton* b : {btnAnteprima, btnModifica, btnDuplica, btnElimina, btnPredefinito}) comandi->addWidget(b);
    comandi->addStretch(1);
    comandi->addWidget(btnAnnulla);
    griglia->addLayout(comandi, 0, 1, 3, 1);
    griglia->setRowStretch(2, 1);

    connect(VetraCombo1, &QComboBox::currentIndexChanged, this, [this] { AbilitaComandi(); });
    connect(btnAnteprima, &QPushButton::clicked, this, &frmStampa::Anteprima);
    connect(btnModifica, &QPushButton::clicked, this, &frmStampa::Modifica);
    connect(btnDuplica, &QPushButton::clicked, this, &frmStampa::Duplica);
    connect(btnElimina, &QPushButton::clicked, this, &frmStampa::Elimina);
    connect(btnPredefinito, &QPushButton::clicked, this, &frmStampa::Predefinito);
    connect(btnAnnulla, &QPushButton::clicked, this, &QDialog::reject);
    AbilitaComandi();
}

void frmStampa::Edita(const core::RichiestaStampa& richiesta) {
    richiesta_ = richiesta;
    VetraCombo1->setDatabase(core::session().dbAziende);
    VetraCombo1->setSorgente(output::SqlElencoReport(richiesta.sezione, core::session().IDAzienda));
    VetraCombo1->setColonne({{"Report", "Report", 1400}});
    VetraCombo1->setCampoTesto("Report");
    Carica(store::Value());
}

// Reruns the list and chooses the row of that ID, or the first row (the default) without one.
void frmStampa::Carica(const store::Value& scegli) {
    VetraCombo1->Aggiorna();
    if (!scegli.isNull()) VetraCombo1->setValore(scegli);
    if (VetraCombo1->currentIndex() < 0 && VetraCombo1->count() > 0) VetraCombo1->setCurrentIndex(0);
    AbilitaComandi();
}

void frmStampa::AbilitaComandi() {
    const bool scelto = !VetraCombo1->valore().isNull();
    for (QPushButton* b : {btnAnteprima, btnModifica, btnDuplica, btnElimina, btnPredefinito}) b->setEnabled(scelto);
}

std::string frmStampa::FileScelto() const {
    return core::CartellaReport() + "/" + store::ConcatText(VetraCombo1->campo("Report"));
}

void frmStampa::PreparaMotore() {
    const core::Session& s = core::session();
    Report.File = FileScelto();
    Report.Azienda = s.IDAzienda;
    Report.dbArchivio = s.dbArchivio;
    Report.dbTemp = s.dbTemp;
    Report.dbAziende = s.dbAziende;
    Report.Archivio = s.dbArchivio ? s.dbArchivio->Name() : std::string();
    Report.Scratch = s.dbTemp ? s.dbTemp->Name() : std::string();
    Report.CartellaDati = s.dbAziende ? fs::path(s.dbAziende->Name()).parent_path().string() : std::string();
    Report.CartellaAzienda = core::LeggiIni("Azienda", "PATH");
    Report.CartellaImmagini = (fs::path(Report.CartellaDati) / "Report" / "Immagini").string();
    Report.Carica();

    output::Dichiarazioni d;
    for (const auto& sub : Report.SubReports()) {
        if (sub.interno) continue;   // the layout fills it itself
        auto& x = d.subReports.emplace_back();
        x.nome = sub.nome;
        for (const auto& p : sub.parametri) x.parametri.push_back(p.nome);
    }
    for (const auto& p : Report.Parametri()) d.parametri.push_back(p.nome);
    const output::Assegnazioni a = output::Assegna(d, richiesta_, Report.NomeFile());
    auto assegna = [](std::vector<ui::report::ParametroDichiarato>& dichiarati,
                      const std::vector<std::pair<std::string, std::string>>& valori) {
        for (const auto& [nome, valore] : valori)
            for (auto& p : dichiarati)
                if (store::AsciiLower(p.nome) == store::AsciiLower(nome)) p.valore = valore;
    };
    for (const auto& dato : a.subReports) {
        ui::report::SubReportDichiarato& sub = Report.SubReport(dato.nome);
        if (dato.query) sub.query = *dato.query;
        assegna(sub.parametri, dato.parametri);
    }
    assegna(Report.Parametri(), a.parametri);
}

void frmStampa::Anteprima() {
    if (VetraCombo1->valore().isNull()) return;
    eseguiMostrandoErrori([&] {
        PreparaMotore();
        Report.Anteprima(this);
    });
}

void frmStampa::Duplica() {
    const store::Value id = VetraCombo1->valore();
    if (id.isNull()) return;
    const std::string titolo = core::Testo("s294");
    const auto nome = core::dialogs().inputBox(titolo, titolo, "");
    if (!nome || core::Trim(*nome).empty()) return;
    eseguiMostrandoErrori([&] {
        const output::EsitoDuplica esito =
            output::DuplicaReport(core::session().dbAziende, core::CartellaReport(), store::CLng(id), *nome);
        if (esito.id == 0) {
            if (!esito.messaggio.empty()) core::MsgBox(esito.messaggio, core::vbExclamation);
            return;
        }
        Carica(store::Value::Long(esito.id));
        Anteprima();
    });
}

void frmStampa::Elimina() {
    const store::Value id = VetraCombo1->valore();
    if (id.isNull()) return;
    eseguiMostrandoErrori([&] {
        output::EliminaReport(*core::session().dbAziende, core::CartellaReport(), store::CLng(id));
        Carica(store::Value());
    });
}

// The layout editor on the chosen file, its preview on the caller's statements and parameters; when
// they do not fit the file, on the file's own.
void frmStampa::Modifica() {
    if (VetraCombo1->valore().isNull()) return;
    eseguiMostrandoErrori([&] {
        try {
            PreparaMotore();
        } catch (const store::JetError&) {
            if (!Report.Caricato()) throw;
        }
        ui::report::frmEditorReport editor(Report, this);
        ui::eseguiModale(&editor, [&] { return editor.exec() == QDialog::Accepted; });
    });
}

void frmStampa::Predefinito() {
    const store::Value id = VetraCombo1->valore();
    if (id.isNull()) return;
    eseguiMostrandoErrori([&] {
        output::ImpostaPredefinito(*core::session().dbAziende, richiesta_.sezione, core::session().IDAzienda,
                                   store::CLng(id));
        Carica(id);
    });
}
