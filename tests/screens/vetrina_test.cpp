// Pictures of the sales screens with a realistic fattura, for a person to look at: run with
// BREVANO_VETRINA set to a folder (under Xvfb for real windows). Without it the test is skipped.
#include <QApplication>
#include <QTabWidget>
#include <QTimer>

#include <utility>

#include <cstdlib>
#include <string>

#include "core/archivio_sql.h"
#include "core/documenti.h"
#include "core/pannello.h"
#include "sales/screens/frmDocumenti.h"
#include "sales/totali.h"
#include "support/avvio_prova.h"
#include "support/fattura_prova.h"
#include "ui/Dettaglio.h"
#include "ui/VetraGrid.h"
#include "ui/report/Motore.h"

using namespace prova;

namespace {

void foto(QWidget* w, const std::string& nome) {
    w->show();
    w->raise();
    for (int i = 0; i < 5; ++i) QApplication::processEvents();
    QTest::qWait(150);
    w->grab().save(QString::fromStdString(std::string(std::getenv("BREVANO_VETRINA")) + "/" + nome + ".png"));
}


TEST(Vetrina, FatturaRealistica) {
    if (!std::getenv("BREVANO_VETRINA")) GTEST_SKIP() << "BREVANO_VETRINA not set";
    ProgrammaDiProva p;
    apriEsercizioDiProva(p);
    prova::FatturaRealistica(*core::ArchivioAperto());
    core::ImpostaModoSchermo("frmDocumenti", core::TipoFatturaEmessa);
    frmDocumenti r;
    r.resize(1280, 760);
    r.griglia()->vaiAId(1);
    foto(&r, "documenti_righe");
    for (int t = 1; t < r.sTab->count(); ++t) {
        r.sTab->setCurrentIndex(t);
        foto(&r, "documenti_scheda" + std::to_string(t));
    }
    // The fattura on paper, from the shipped layout, as the print screen would fill it.
    ui::report::Motore m;
    prova::StampaFattura(m, 1);
    m.EsportaPdf(std::string(std::getenv("BREVANO_VETRINA")) + "/fattura.pdf");
    // The editors, shown by the register's own commands and photographed while open.
    const std::pair<const char*, const char*> editori[] = {{"btnModifica", "frmDocumentiEdita"},
                                                           {"btnModificaMov", "frmMovimentiEdita"}};
    for (const auto& [comando, schermo] : editori) {
        r.sTab->setCurrentIndex(0);
        const std::string nome = schermo;
        p.script->schermo(nome, [nome](QWidget* w) {
            if (w) foto(w, nome);
            return false;
        });
        clic(&r, comando);
    }
}

}  // namespace
