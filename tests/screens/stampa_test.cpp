// frmStampa as the registers reach it through core::Stampa: the section's layouts with the default
// first, the preview with the caller's names, copy, deletion, default, and the refusals.
#include <QLabel>

#include <filesystem>
#include <fstream>

#include "core/archivio_sql.h"
#include "core/file.h"
#include "output/screens/frmStampa.h"
#include "report/report_support.h"
#include "support/avvio_prova.h"
#include "ui/Dialoghi.h"
#include "ui/VetraCombo.h"

using namespace prova;
namespace fs = std::filesystem;

namespace {

const char* kReport = R"(<?xml version="1.0" encoding="UTF-8"?>
<report formato="brevano-report" versione="1" titolo="Documenti" sorgente="Elenco">
  <parametro nome="Titolo"/>
  <subreport nome="Elenco" database="archivio">
    <parametro nome="Tipo"/>
    <query>Select Numero, Tipo from Documenti where Tipo={Tipo} order by Numero</query>
  </subreport>
  <banda tipo="intestazioneReport" altezza="10"><testo x="0" y="0" larghezza="100" altezza="10">{Titolo}</testo></banda>
  <banda tipo="dettaglio" altezza="5"><campo x="0" y="0" larghezza="30" altezza="5" nome="Numero"/></banda>
  <banda tipo="piedePagina" altezza="5"><testo x="0" y="0" larghezza="100" altezza="5">Pagina {Pagina} di {Pagine}</testo></banda>
</report>
)";

class Stampa : public EsercizioAperto {
protected:
    void SetUp() override {
        EsercizioAperto::SetUp();
        cartella = core::CartellaReport();
        fs::create_directories(cartella);
        auto& m = *core::session().dbAziende;
        m.Execute("Insert Into FormReport (ID,Azienda,Sezione,Report,Predefinito) VALUES (101,1,'Elenchi','Primo.rpf',0)");
        m.Execute("Insert Into FormReport (ID,Azienda,Sezione,Report,Predefinito) VALUES (102,1,'Elenchi','Secondo.rpf',-1)");
        m.Execute("Insert Into FormReport (ID,Azienda,Sezione,Report,Predefinito) VALUES (103,2,'Elenchi','Altra.rpf',-1)");
        for (const char* f : {"Primo.rpf", "Secondo.rpf"}) std::ofstream(cartella + "/" + f) << kReport;
        core::Archivio().Execute("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente) VALUES (1,5,17,#03/10/2026#,1)");
    }

    void Apri(core::RichiestaStampa richiesta, const std::function<void(frmStampa&)>& azione) {
        bool mostrato = false;
        p.script->schermo("frmStampa", [&](QWidget* w) {
            mostrato = true;
            auto* f = qobject_cast<frmStampa*>(w);
            if (!f) ADD_FAILURE() << "frmStampa non trovato";
            else azione(*f);
            return false;
        });
        core::Stampa(richiesta);
        EXPECT_TRUE(mostrato);
    }

    static core::RichiestaStampa Richiesta(const std::string& sezione = "Elenchi") {
        core::RichiestaStampa r;
        r.sezione = sezione;
        core::Parametri tipo;
        tipo.Add("Tipo", "Tipo", "5");
        r.subReports.Add("Elenco", "", tipo);
        r.parametri.Add("Titolo", "Titolo", "Fatture emesse");
        return r;
    }

    // No message shown when none is expected, else one that holds the text expected.
    void Messaggio(const std::string& atteso) {
        const auto testi = testiMostrati(*p.script);
        ASSERT_EQ(testi.size(), atteso.empty() ? 0u : 1u) << (testi.empty() ? "" : testi[0]);
        if (!atteso.empty()) {
            EXPECT_NE(testi[0].find(atteso), std::string::npos) << testi[0];
        }
    }

    std::vector<std::string> Elenco(frmStampa& f) {
        std::vector<std::string> v;
        for (int i = 0; i < f.VetraCombo1->count(); ++i) v.push_back(f.VetraCombo1->itemText(i).toStdString());
        return v;
    }

    std::map<long, bool> Predefiniti() {
        std::map<long, bool> m;
        auto rs = core::session().dbAziende->OpenRecordset("Select ID, Predefinito from FormReport where Sezione='Elenchi'");
        for (; !rs->Eof(); rs->MoveNext()) m[store::CLng(rs->get("ID"))] = store::CBool(rs->get("Predefinito"));
        return m;
    }

    std::string cartella;
};

}  // namespace

TEST_F(Stampa, AnteprimaConINomiDelChiamante) {
    struct Caso {
        const char* nome;
        std::function<void(core::RichiestaStampa&)> cambia;
        std::string messaggio;   // "" when the preview is shown
    };
    const std::vector<Caso> casi{
        {"tutto passato", [](core::RichiestaStampa&) {}, ""},
        {"parametro del report mancante", [](core::RichiestaStampa& r) { r.parametri = core::Parametri::Nessuno(); },
         "3265; Secondo.rpf: il parametro Titolo dichiarato dal report non è tra quelli passati"},
        {"sub-report mancante", [](core::RichiestaStampa& r) { r.subReports.Remove("Elenco"); r.subReports.Add("Righe", ""); },
         "3265; Secondo.rpf: il sub-report Elenco dichiarato dal report non è tra quelli passati"},
        {"query del chiamante",
         [](core::RichiestaStampa& r) {
             r.subReports.Add("Elenco", "Select Numero from Documentx", r.subReports.Item("Elenco")->parametri);
         },
         "3078; Secondo.rpf: la query del sub-report Elenco non si esegue"},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        core::RichiestaStampa r = Richiesta();
        c.cambia(r);
        p.script->dimentica();
        std::string pagina;
        p.script->sempre("frmAnteprima", [&] {
            if (auto* l = ui::schermoInCorso()->findChild<QLabel*>("lblPagina")) pagina = l->text().toStdString();
            return false;
        });
        Apri(r, [&](frmStampa& f) { clic(&f, "btnAnteprima"); });
        Messaggio(c.messaggio);
        EXPECT_EQ(pagina, c.messaggio.empty() ? "Pagina 1 di 1" : "");
    }
}

TEST_F(Stampa, DuplicaConNomiBuoniECattivi) {
    struct Caso {
        std::optional<std::string> nome;
        std::string file;        // the new file, "" when none is made
        std::string messaggio;   // "" when none is shown
    };
    const std::vector<Caso> casi{
        {std::nullopt, "", ""},
        {"Copia", "Copia.rpf", ""},
        {"Primo.rpf", "", "Esiste già un report di nome \"Primo.rpf\": scegliere un altro nome."},
        {"a/b", "", "contiene caratteri che un nome di file non può avere"},
    };
    for (const auto& c : casi) {
        p.script->dimentica();
        const auto prima = Predefiniti();
        bool anteprima = false;
        p.script->sempre("frmAnteprima", [&] { return anteprima = true, false; });
        p.script->testo(c.nome);
        std::string scelto;
        Apri(Richiesta(), [&](frmStampa& f) {
            clic(&f, "btnDuplica");
            scelto = f.VetraCombo1->currentText().toStdString();
        });
        Messaggio(c.messaggio);
        if (c.file.empty()) {
            EXPECT_EQ(Predefiniti(), prima);
            EXPECT_FALSE(anteprima);
            continue;
        }
        EXPECT_TRUE(anteprima);
        EXPECT_EQ(scelto, c.file);
        std::ifstream copia(cartella + "/" + c.file);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(copia), {}), kReport);
        EXPECT_EQ(contaRighe(*core::session().dbAziende, "Select * from FormReport where Azienda=1 and "
                             "Sezione='Elenchi' and Predefinito=False and Report='" + c.file + "'"), 1);
    }
}

// The section's layouts, the default first; a section with none leaves every command off.
TEST_F(Stampa, EliminaPredefinitoEModifica) {
    Apri(Richiesta("Bilancio"), [&](frmStampa& f) {
        for (auto* b : {f.btnAnteprima, f.btnDuplica, f.btnElimina, f.btnModifica, f.btnPredefinito})
            EXPECT_FALSE(b->isEnabled()) << b->objectName().toStdString();
    });
    Apri(Richiesta(), [&](frmStampa& f) {
        EXPECT_EQ(Elenco(f), (std::vector<std::string>{"Secondo.rpf", "Primo.rpf"}));
        f.VetraCombo1->setValore(store::Value::Long(101));
        clic(&f, "btnPredefinito");
        EXPECT_EQ(f.VetraCombo1->currentText(), "Primo.rpf");
        EXPECT_EQ(Elenco(f), (std::vector<std::string>{"Primo.rpf", "Secondo.rpf"}));
    });
    EXPECT_EQ(Predefiniti(), (std::map<long, bool>{{101, true}, {102, false}, {103, true}}));

    Apri(Richiesta(), [&](frmStampa& f) {
        clic(&f, "btnModifica");
        clic(&f, "btnElimina");
        EXPECT_EQ(Elenco(f), (std::vector<std::string>{"Secondo.rpf"}));
    });
    EXPECT_FALSE(fs::exists(cartella + "/Primo.rpf"));
    EXPECT_TRUE(fs::exists(cartella + "/Secondo.rpf"));
    EXPECT_EQ(Predefiniti(), (std::map<long, bool>{{102, false}, {103, true}}));
    // The editor opens on the chosen file (its own tests drive it), with nothing to complain of.
    EXPECT_EQ(p.script->schermiMostrati().back(), "frmEditorReport");
    EXPECT_TRUE(testiMostrati(*p.script).empty());
}

// The shipped layout of a fattura on a real archive: forty lines spill onto a second page, which
// repeats the headings and carries the total of the first.
TEST_F(Stampa, FatturaSuDuePagineInPdf) {
    auto& a = core::Archivio();
    a.Execute("Insert Into Clienti (ID,DescCliente,Indirizzo,Cap,Citta,Provincia,PartitaIva) "
              "VALUES (1,'Rossi Impianti srl','Via Roma 12','00184','Roma','RM','01234567890')");
    a.Execute("Insert Into CodiciIva (ID,DescIva,AliquotaIva) VALUES (1,'22%',22)");
    a.Execute("Update Documenti set Imponibile=1640, TotIva=360.8, ImportoTotale=2000.8 where ID=1");
    for (int i = 1; i <= 40; ++i)
        a.Execute("Insert Into Movimenti (ID,Documento,DescMovimento,Quantita,PrezzoUnitario,Importo,Iva) VALUES (" +
                  std::to_string(i) + ",1,'Intervento " + std::to_string(i) + "',1," + std::to_string(i) + "," +
                  std::to_string(i) + ",1)");
    fs::copy_file(fs::path(BREVANO_SOURCE_DIR) / "data/report/Fatture.rpf", cartella + "/Fatture.rpf");
    core::session().dbAziende->Execute(
        "Insert Into FormReport (ID,Azienda,Sezione,Report,Predefinito) VALUES (110,1,'Fatture','Fatture.rpf',-1)");

    // As the documents register hands it over; without the caller's statements the layout shows the
    // latest fattura, the same one here.
    core::RichiestaStampa r;
    r.sezione = "Fatture";
    r.subReports.Add("Documento", "Select * from qrDocumenti where ID=1");
    r.subReports.Add("Movimento", "Select * from qrMovimenti where Documento=1");
    r.subReports.Add("Elenco", "Select * from qrDocumenti");
    r.parametri.Add("Criterio", "Criterio", "Tutti");
    for (const auto& richiesta : {r, core::RichiestaStampa{"Fatture", {}, {}}}) {
        const std::string pdf = cartella + "/fattura.pdf";
        p.script->percorso(pdf);
        p.script->sempre("frmAnteprima", [] {
            clic(ui::schermoInCorso(), "btnSalvaPdf");
            return false;
        });
        Apri(richiesta, [&](frmStampa& f) { clic(&f, "btnAnteprima"); });
        EXPECT_TRUE(testiMostrati(*p.script).empty()) << testiMostrati(*p.script)[0];
        const std::vector<std::string> pagine = prova::PagineDelPdf(pdf);
        fs::remove(pdf);
        ASSERT_EQ(pagine.size(), 2u);
        // Lines 1 to 39 on the first page: the last line goes over with the totals, 780,00 carried.
        for (const char* atteso : {"Rossi Impianti srl", "10/03/2026", "A riportare", "780,00", "Pagina 1 di 2"})
            EXPECT_NE(pagine[0].find(atteso), std::string::npos) << atteso << "\n" << pagine[0];
        for (const char* atteso : {"Descrizione", "Importo", "Riporto", "780,00", "Intervento 40", "1.640,00", "360,80",
                                   "2.000,80", "Pagina 2 di 2"})
            EXPECT_NE(pagine[1].find(atteso), std::string::npos) << atteso << "\n" << pagine[1];
    }
}
