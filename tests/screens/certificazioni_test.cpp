// The withholding certificates as the office uses them: the fatture with a withholding listed and
// searched, a certificate marked as received and back, and printed on the shipped layout to a PDF
// whose amounts are worked out by hand.
#include <QCheckBox>
#include <QComboBox>
#include <QTest>
#include <filesystem>
#include <functional>

#include "core/archivio_sql.h"
#include "core/file.h"
#include "core/session.h"
#include "expenses/screens/frmCertificazioniAcconto.h"
#include "report/report_support.h"
#include "support/acquisti_prova.h"
#include "ui/Dialoghi.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

using namespace prova;
namespace fs = std::filesystem;

namespace {

class Certificazioni : public Acquisti {
protected:
    void SetUp() override {
        Acquisti::SetUp();
        db->Execute("Insert Into Clienti (ID,DescCliente,Indirizzo,Cap,Citta,Provincia) "
                    "VALUES (1,'Studio Neri','Via Emilia 3','41121','Modena','MO')");
        db->Execute("Insert Into Clienti (ID,DescCliente) VALUES (2,'Bianchi Srl')");
        // Fattura 27: 1,250.00 taxable, 22% VAT 275.00, 20% withheld 250.00: 1,275.00 to collect.
        // Fattura 28: 500.00, VAT 110.00, 4% withheld 20.00: 590.00, its certificate already in.
        // The third has no withholding; the fourth is a quote.
        for (const char* riga : {"1,5,27,#03/10/2026#,1,20,1250,250,1275,#04/16/2026#,False",
                                 "2,5,28,#04/10/2026#,2,4,500,20,590,#05/16/2026#,True",
                                 "3,5,29,#04/12/2026#,2,0,100,0,122,#05/16/2026#,False",
                                 "4,7,30,#04/12/2026#,1,20,100,20,102,#05/16/2026#,False"})
            db->Execute(std::string("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente,RitenutaAcconto,Imponibile,"
                                    "TotRitenutaAcconto,ImportoTotale,DataScadAcconto,CertAcconto) VALUES (") +
                        riga + ")");
    }

    static std::vector<long> righe(ui::VetraGrid* g) {
        std::vector<long> ids;
        for (auto rs = core::ArchivioAperto()->OpenRecordset(g->sorgente()); !rs->Eof(); rs->MoveNext())
            ids.push_back(store::CLng(rs->get("ID")));
        std::sort(ids.begin(), ids.end());
        return ids;
    }
};

// The search: each criterion on the due date of the withholding, the customer and the state, a
// ticked date that holds none refused; Seleziona tutto puts all back. Then a certificate received
// and printed.
TEST_F(Certificazioni, RicercaRicevutaEStampaInPdf) {
    frmCertificazioniAcconto r;
    r.show();
    EXPECT_EQ(righe(r.griglia()), (std::vector<long>{1, 2}));
    struct Caso {
        const char* nome;
        std::function<void(frmCertificazioniAccontoCerca*)> compila;
        std::vector<std::string> messaggi;
        std::vector<long> ids;
    };
    const Caso casi[] = {
        {"data mancante", [](auto* c) { c->chkDataDal->setChecked(true); }, {"Inserire la data!"}, {1, 2}},
        {"da ricevere", [](auto* c) { c->OpRicevute->setCurrentIndex(2); }, {}, {1}},
        // The dialog opens on the last criteria: each case says only what it changes.
        {"periodo e cliente", [](auto* c) {
             c->OpRicevute->setCurrentIndex(0);
             c->chkDataDal->setChecked(true);
             c->pkDataDal->setTesto("01/05/2026");
             c->chkDest->setChecked(true);
             c->cbDest->setValore(store::Value::Long(2));
         }, {}, {2}},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        p.script->dimentica();
        cercaCon<frmCertificazioniAccontoCerca>(*p.script, c.compila, "Command1");
        clic(&r, "btnRicerca");
        EXPECT_EQ(testiMostrati(*p.script), c.messaggi);
        EXPECT_EQ(righe(r.griglia()), c.ids);
    }
    clic(&r, "Command1");
    EXPECT_EQ(righe(r.griglia()), (std::vector<long>{1, 2}));
    // Nothing is deleted from here, whatever the key.
    ASSERT_TRUE(r.griglia()->vaiAId(1));
    QTest::keyClick(r.griglia(), Qt::Key_Delete);
    EXPECT_EQ(conta("Select * from Documenti"), 4);

    // Marked as received and back: the row shows it at once and the archive keeps it; then the
    // certificate of fattura 27 on the shipped layout, to a PDF with its amounts.
    for (const char* atteso : {"Ricevuta", "Da ricevere"}) {
        clic(&r, "btnRicevuta");
        EXPECT_EQ(store::ConcatText(r.griglia()->valore("DescCertAcconto")), atteso);
        EXPECT_EQ(r.griglia()->idCorrente(), 1);
        EXPECT_EQ(conta("Select * from Documenti where ID=1 and CertAcconto=True"), std::string(atteso) == "Ricevuta");
    }
    EXPECT_EQ(conta("Select * from Documenti where ID=2 and CertAcconto=True"), 1);

    const std::string cartella = core::CartellaReport();
    fs::create_directories(cartella);
    fs::copy_file(fs::path(BREVANO_SOURCE_DIR) / "data/report/Ritenuta Acconto.rpf", cartella + "/Ritenuta Acconto.rpf",
                  fs::copy_options::overwrite_existing);
    core::session().dbAziende->Execute("Insert Into FormReport (ID,Azienda,Sezione,Report,Predefinito) "
                                       "VALUES (120,1,'RitenutaAcconto','Ritenuta Acconto.rpf',-1)");
    const std::string pdf = cartella + "/certificazione.pdf";
    p.script->percorso(pdf);
    p.script->sempre("frmAnteprima", [] {
        clic(ui::schermoInCorso(), "btnSalvaPdf");
        return false;
    });
    p.script->schermo("frmStampa", [](QWidget* w) {
        clic(w, "btnAnteprima");
        return false;
    });
    p.script->dimentica();
    clic(&r, "btnStampa");
    EXPECT_TRUE(testiMostrati(*p.script).empty()) << testiMostrati(*p.script)[0];
    const std::vector<std::string> pagine = PagineDelPdf(pdf);
    ASSERT_EQ(pagine.size(), 1u);
    for (const char* testo : {"Studio Neri", "N. 27", "10/03/2026", "1.250,00", "20%", "250,00", "1.275,00",
                              "entro il 16/04/2026", "Da ricevere"})
        EXPECT_NE(pagine[0].find(testo), std::string::npos) << testo;
    EXPECT_EQ(pagine[0].find("590,00"), std::string::npos);
    fs::remove(pdf);
}

}  // namespace
