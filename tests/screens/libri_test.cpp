// The books as the user meets them: a customer's statement on its tab, made again at each change of
// its options and printed; the general supplier statement made and printed at once; the bilancio's
// figures, its month list, its chart and its print.
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QTabWidget>
#include <QtCharts/QBarSeries>
#include <QtCharts/QBarSet>
#include <QtCharts/QChartView>

#include "books/estratto.h"
#include "books/screens/frmBilancio.h"
#include "books/screens/frmEstrattoContoGenerale.h"
#include "core/archivio_sql.h"
#include "core/estratto_conto.h"
#include "core/stampa.h"
#include "sales/screens/frmClienti.h"
#include "store/clock.h"
#include "support/avvio_prova.h"
#include "ui/Dettaglio.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

namespace {

using namespace prova;

class Libri : public EsercizioAperto {
protected:
    void SetUp() override {
        store::fissaOrologio(store::DateSerial(2026, 6, 15));
        EsercizioAperto::SetUp();
        core::session().dbTemp = store::Workspace::Default().OpenDatabase((p.programma / "temp.mdb").string());
        core::installaGeneraEstratto(GeneraEstrattoConProgresso);

        db->Execute("Insert Into CodiciIva (ID,DescIva,AliquotaIva) VALUES (1,'22',22)");
        db->Execute("Insert Into Clienti (ID,DescCliente,DescCliente2,Indirizzo,Cap,Citta,Provincia,PartitaIva) "
                    "VALUES (1,'Rossi','Srl','Via Roma 1','20100','Milano','MI','0123')");
        db->Execute("Insert Into Fornitori (ID,DescFornitore) VALUES (1,'Beta')");
        db->Execute("Insert Into Fornitori (ID,DescFornitore) VALUES (2,'Alfa')");
        // A fattura of March paid in part, another of May paid in full in June.
        db->Execute("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente,ImportoTotale) VALUES (1,5,1,#03/05/2026#,1,1220)");
        db->Execute("Insert Into Movimenti (ID,Documento,Importo,Iva) VALUES (1,1,1000,1)");
        db->Execute("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente,ImportoTotale) VALUES (2,5,2,#05/20/2026#,1,244)");
        db->Execute("Insert Into Movimenti (ID,Documento,Importo,Iva) VALUES (2,2,200,1)");
        db->Execute("Insert Into Pagamenti (ID,Documento,Cliente,DescPagamento,DataPagamento,ImportoPagamento) "
                    "VALUES (1,1,1,'Acconto',#03/20/2026#,500)");
        db->Execute("Insert Into Pagamenti (ID,Documento,Cliente,DescPagamento,DataPagamento,ImportoPagamento) "
                    "VALUES (2,2,1,'Saldo',#06/03/2026#,244)");
        db->Execute("Insert Into Spese (ID,Numero,Data,Fornitore,ImportoSpesa) VALUES (1,'7',#03/10/2026#,1,300)");
        db->Execute("Insert Into Spese (ID,Numero,Data,Fornitore,ImportoSpesa) VALUES (2,'8',#04/10/2026#,2,200)");
        db->Execute("Insert Into Pagamenti (ID,Spesa,Fornitore,DescPagamento,DataPagamento,ImportoPagamento) "
                    "VALUES (3,1,1,'Bonifico',#03/15/2026#,100)");
    }
    void TearDown() override {
        core::installaGeneraEstratto(nullptr);
        store::fissaOrologio(std::nullopt);
    }

    std::vector<double> saldi(ui::VetraGrid* g) {
        std::vector<double> v;
        for (int i = 0; i < g->righeMostrate(); ++i) v.push_back(store::CDbl(g->modello()->valore(i, "Saldo")));
        return v;
    }

    StampeRaccolte stampe;
};

TEST_F(Libri, EstrattoClienteSullaSchedaRifattoAOgniOpzione) {
    frmClienti r;
    r.show();
    r.sTab->setCurrentWidget(r.GridEstratto->parentWidget());
    ui::VetraGrid* g = r.GridEstratto->griglia();
    EXPECT_EQ(saldi(g), (std::vector<double>{1220, 720, 964, 720}));
    struct Passo {
        const char* nome;
        std::function<void()> azione;
        std::vector<double> saldi;
    } const passi[] = {
        {"solo partite aperte", [&] { r.chkPartiteAperte->setChecked(true); }, {1220, 720}},
        {"da aprile", [&] { r.pkEstrattoDal->setTesto("01/04/2026"); }, {}},
        {"tutte, da aprile", [&] { r.chkPartiteAperte->setChecked(false); }, {244, 0}},
        {"fino a maggio: il saldo di giugno resta fuori", [&] { r.pkEstrattoAl->setTesto("31/05/2026"); }, {244}},
    };
    for (const auto& p : passi) {
        SCOPED_TRACE(p.nome);
        p.azione();
        EXPECT_EQ(saldi(g), p.saldi);
    }

    clic(&r, "btnStampaEstratto");
    ASSERT_EQ(stampe.size(), 1u);
    std::vector<std::string> parametri;
    for (const char* nome : {"Denominazione", "Indirizzo", "Recapito", "PartitaIva"})
        parametri.push_back(stampe[0].parametri.PerNome(nome) ? stampe[0].parametri.PerNome(nome)->Valore : "<manca>");
    EXPECT_EQ(parametri, (std::vector<std::string>{"Rossi Srl", "Via Roma 1", "20100 Milano MI", "0123"}));
}

TEST_F(Libri, EstrattoGeneraleFornitoriGeneratoEStampato) {
    frmEstrattoContoGenerale f;
    f.pkAl->setTesto("31/03/2026");
    clic(&f, "btnConferma");
    ASSERT_EQ(stampe.size(), 1u);
    const std::string elenco = stampe[0].subReports.Item("Elenco")->Query;
    std::vector<double> v;
    for (auto rs = core::session().dbTemp->OpenRecordset(elenco); !rs->Eof(); rs->MoveNext())
        v.push_back(store::CDbl(rs->get("Saldo")));
    EXPECT_EQ(v, (std::vector<double>{300, 200}));  // Alfa's expense of April is after the period
}

TEST_F(Libri, BilancioMesiCifreGraficoEStampa) {
    frmBilancio b;
    // First entry: from the start of the period to today.
    EXPECT_EQ(b.pkDataDal->testo() + " " + b.pkDataAl->testo(), "01/01/2026 15/06/2026");
    EXPECT_EQ(b.lblVendite->text() + " " + b.lblIncassi->text(), "1.200,00 744,00");
    struct Caso {
        int mese;
        const char* dal;
        const char* al;
        const char* vendite;
        const char* saldoFuoriCassa;
        const char* saldoInCassa;
    } const casi[] = {
        {3, "01/03/2026", "31/03/2026", "1.000,00", "1.220,00", "400,00"},
        {6, "01/06/2026", "30/06/2026", "0,00", "0,00", "244,00"},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.mese);
        b.cbMese->setCurrentIndex(c.mese);
        EXPECT_EQ((std::vector<std::string>{b.pkDataDal->testo(), b.pkDataAl->testo(), b.lblVendite->text().toStdString(),
                                            b.lblSaldoFuoriCassa->text().toStdString(), b.lblSaldoInCassa->text().toStdString()}),
                  (std::vector<std::string>{c.dal, c.al, c.vendite, c.saldoFuoriCassa, c.saldoInCassa}));
    }
    // A changed date recomputes; an end before the start gives zeros.
    b.pkDataDal->setTesto("01/07/2026");
    EXPECT_EQ(b.lblSaldoInCassa->text(), "0,00");

    // The chart's bars are the months' figures from the start of the period, whatever the dates.
    QCoreApplication::processEvents();
    ASSERT_FALSE(b.grafico->chart()->series().isEmpty());
    auto* serie = qobject_cast<QBarSeries*>(b.grafico->chart()->series().at(0));
    ASSERT_NE(serie, nullptr);
    ASSERT_EQ(serie->barSets().size(), 4);
    EXPECT_DOUBLE_EQ(serie->barSets()[0]->at(2), 1220);  // registered in March, VAT included
    EXPECT_DOUBLE_EQ(serie->barSets()[1]->at(2), 500);   // collected in March
    EXPECT_DOUBLE_EQ(serie->barSets()[1]->at(5), 244);   // collected in June
    EXPECT_DOUBLE_EQ(serie->barSets()[3]->at(2), 100);   // paid in March
    b.pkDataDal->setTesto("01/03/2026");

    clic(&b, "btnStampa");
    ASSERT_EQ(stampe.size(), 1u);
    EXPECT_EQ(stampe[0].parametri.PerNome("Periodo")->Valore, "Dal 01/03/2026 Dal 30/06/2026");
    EXPECT_EQ(stampe[0].parametri.PerNome("SaldoInCassa")->Valore, b.lblSaldoInCassa->text().toStdString());
}

}  // namespace
