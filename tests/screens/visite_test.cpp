// The visits of a customer on the real screens: added, changed and deleted from the customer's tab,
// their times checked, and a period of them turned into a fattura with its period and totals.
#include <QApplication>
#include <QCheckBox>
#include <QTabWidget>
#include <QTest>

#include "core/archivio_sql.h"
#include "core/diritti.h"
#include "sales/screens/frmAssistenzeEdita.h"
#include "sales/screens/frmClienti.h"
#include "sales/screens/frmDocAssistenzeEdita.h"
#include "store/convert.h"
#include "support/avvio_prova.h"
#include "ui/Dettaglio.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

using namespace prova;

namespace {

const char* const kOrario = "Inserire un orario valido (per esempio 14.30)!";

class VisiteSchermi : public EsercizioAperto {
protected:
    void SetUp() override {
        EsercizioAperto::SetUp();
        for (const char* riga : {"CodiciIva (ID,DescIva,AliquotaIva) VALUES (1,'Iva 22%',22)",
                                 "CondizioniPagamento (ID,DescPagamento,Rate) VALUES (1,'Rimessa diretta',0)",
                                 "Clienti (ID,DescCliente,CondizioniPagamento) VALUES (1,'Rossi Impianti',1)",
                                 "Clienti (ID,DescCliente) VALUES (2,'Bianchi Mario')",
                                 "Servizi (ID,DescServizio,CodiceInterno) VALUES (1,'Assistenza','AS')",
                                 "Servizi (ID,DescServizio,CodiceInterno) VALUES (2,'Installazione','IN')"})
            db->Execute(std::string("Insert Into ") + riga);
    }

    void visita(long id, const char* data, const char* inizio, const char* fine, double km, bool fattura = true) {
        db->Execute("Insert Into Assistenze (ID,Cliente,Servizio,Data,OraInizio,OraFine,Km,Fattura) VALUES (" +
                    std::to_string(id) + ",1,1,'" + data + "','" + inizio + "','" + fine + "'," +
                    core::NumeroSql(km) + "," + (fattura ? "True" : "False") + ")");
    }

    // The customer's register on Rossi's visits tab, shown so that the tab reads its rows.
    std::unique_ptr<frmClienti> registro() {
        auto r = std::make_unique<frmClienti>();
        r->show();
        r->griglia()->vaiAId(1);
        r->sTab->setCurrentIndex(5);
        return r;
    }
};

// A visit added from the customer's tab: the customer preset, an end before the start refused, then
// times typed as a desk would (letters refused by the box) and saved.
TEST_F(VisiteSchermi, NuovaVisitaDalCliente) {
    auto r = registro();
    p.script->schermo(frmAssistenzeEdita::Nome, [this](QWidget* w) {
        auto* e = static_cast<frmAssistenzeEdita*>(w);
        const auto orari = [e](const QString& inizio, const QString& fine, const QString& km) {
            for (auto [nome, testo] : {std::pair{"VText2", inizio}, {"VText3", fine}, {"VText1", km}})
                scrivi(e, nome, testo);
        };
        EXPECT_EQ(e->cbClienti->testo(), "Rossi Impianti");
        e->pkData->setTesto("14/03/2026");
        e->cbServizi->setValore(store::Value::Long(2));
        e->Check1->setChecked(true);
        orari("14.30", "9.00", "0");
        clic(e, "btnConferma");
        EXPECT_EQ(testiMostrati(*p.script),
                  std::vector<std::string>{"L'ora di fine dell'intervento è precedente all'ora di inizio!"});
        EXPECT_EQ(conta("Select * from Assistenze"), 0);
        orari("9a.30", "11.x00", "1o0");
        clic(e, "btnConferma");
        return true;
    });
    clic(r.get(), "btnNuovaAssistenza");
    EXPECT_EQ(testiMostrati(*p.script).size(), 1u);
    EXPECT_EQ(conta("Select * from qrAssistenze where Cliente=1 and Servizio=2 and Fattura=True and OraInizio='9.30' "
                    "and TempoIntervento=90 and Km=10"), 1);
    EXPECT_EQ(r->GridAssistenze->griglia()->righeMostrate(), 2);   // the month's caption and the visit
}

// Leaving a time box with no time says so and keeps the focus; an empty box or a time passes.
TEST_F(VisiteSchermi, OrarioControllatoUscendo) {
    const std::pair<QString, bool> casi[] = {{"25.00", true}, {"14.30", false}, {"", false}};   // typed, refused
    frmAssistenzeEdita e;
    e.Prepara({Modalita::Nuovo});
    e.show();
    QApplication::setActiveWindow(&e);
    for (const auto& [testo, rifiutato] : casi) {
        SCOPED_TRACE(testo.toStdString());
        p.script->dimentica();
        e.VText2->setFocus();
        e.VText2->setText(testo);
        QTest::keyClick(e.VText2, Qt::Key_Tab);
        QApplication::processEvents();
        EXPECT_EQ(testiMostrati(*p.script), rifiutato ? std::vector<std::string>{kOrario} : std::vector<std::string>{});
        EXPECT_EQ(QApplication::focusWidget() == e.VText2, rifiutato);
    }
    e.Annulla();
}

// Change and delete from the tab: the question of the delete and its answer.
TEST_F(VisiteSchermi, ModificaEdEliminaDalCliente) {
    visita(1, "05/03/2026", "9.00", "10.30", 0);
    visita(2, "12/03/2026", "14.00", "14.45", 10);
    auto r = registro();
    ui::VetraGrid* g = r->GridAssistenze->griglia();
    ASSERT_TRUE(g->vaiAId(2));
    confermaCon<frmAssistenzeEdita>(*p.script, [](frmAssistenzeEdita* e) {
        EXPECT_EQ(e->VText3->text(), "14.45");
        e->VText3->setText("15.30");
    });
    clic(r.get(), "btnModificaAssistenza");
    EXPECT_EQ(conta("Select * from qrAssistenze where ID=2 and TempoIntervento=90"), 1);

    for (int risposta : {core::vbNo, core::vbYes}) {
        p.script->dimentica();
        p.script->rispondi(risposta);
        ASSERT_TRUE(g->vaiAId(1));
        clic(r.get(), "btnEliminaAssistenza");
        EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{"Scadenze"});
        EXPECT_EQ(conta("Select * from Assistenze"), risposta == core::vbYes ? 1 : 2);
    }
    EXPECT_EQ(conta("Select * from Assistenze where ID=2"), 1);
}

// March of the customer turned into a fattura: period and rates on the document's editor, the
// visits it shows, the inputs it refuses with nothing written, then the lines written.
TEST_F(VisiteSchermi, FatturaDalleVisite) {
    // March: three to charge (90 minutes; 45 with 10 km; 40 with 12,5 km) and one not; one in April.
    visita(1, "05/03/2026", "9.00", "10.30", 0);
    visita(2, "12/03/2026", "14.00", "14.45", 10);
    visita(3, "20/03/2026", "8.30", "9.10", 12.5);
    visita(4, "31/03/2026", "16.00", "17.00", 5, false);
    visita(5, "02/04/2026", "10.00", "11.00", 0);
    auto r = registro();

    p.script->schermo(frmDocAssistenzeEdita::Nome, [this](QWidget* w) {
        auto* e = static_cast<frmDocAssistenzeEdita*>(w);
        const auto periodo = [e](const char* dal, const char* al) {
            e->pkDal->setTesto(dal);
            e->pkAl->setTesto(al);
        };
        EXPECT_EQ(e->cbClienti->testo(), "Rossi Impianti ");   // with its empty second line
        EXPECT_FALSE(e->VText3->isVisibleTo(e));   // no packages on this document
        e->pkData->setTesto("10/04/2026");
        e->txtCostoOra->setText("15");
        periodo("01/03/2026", "31/03/2026");
        EXPECT_EQ(e->GridAssistenze->righeMostrate(), 3);
        clic(e, "btnConferma");
        e->cbIva->setValore(store::Value::Long(1));
        periodo("31/03/2026", "01/03/2026");
        EXPECT_EQ(e->GridAssistenze->righeMostrate(), 0);
        clic(e, "btnConferma");
        EXPECT_EQ(testiMostrati(*p.script),
                  (std::vector<std::string>{"Inserire il codice iva !",
                                            "La data finale del periodo è precedente alla data iniziale!"}));
        EXPECT_EQ(conta("Select * from Documenti"), 0);
        periodo("01/03/2026", "31/03/2026");
        clic(e, "btnConferma");
        return true;
    });
    clic(r.get(), "btnGeneraFavAssistenze");
    EXPECT_EQ(testiMostrati(*p.script).size(), 2u);
    EXPECT_EQ(conta("Select * from Movimenti"), 7);

    const std::string marzo = "Select * from Documenti where Numero=1";
    EXPECT_EQ(conta(marzo + " and CondizioniPagamento=1 and DataDal=#03/01/2026# and DataAl=#03/31/2026# and "
                            "Imponibile=68.25"), 1);
    const long id = store::CLng(db->OpenRecordset(marzo)->get("ID"));

    // Opened again the fattura keeps its lines; period and rates no longer apply.
    frmDocAssistenzeEdita e;
    e.Prepara({Modalita::Modifica, id});
    EXPECT_FALSE(e.pkDal->isEnabled() || e.txtCostoOra->isEnabled());
    EXPECT_EQ(e.GridAssistenze->righeMostrate(), 3);
    e.Conferma();
    EXPECT_EQ(conta("Select * from Movimenti where Documento=" + std::to_string(id)), 7);
    EXPECT_EQ(conta(marzo + " and DataDal=#03/01/2026#"), 1);

    core::session().Privilegi[core::DocumentiModificare - 1] = '0';
    p.script->dimentica();
    clic(r.get(), "btnGeneraFavAssistenze");
    EXPECT_EQ(testiMostrati(*p.script), std::vector<std::string>{kNegato});
}

}  // namespace
