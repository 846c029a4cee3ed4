// The export screens driven offscreen: the period and name checks of the fatture files, the list
// export with its remembered field order, and the spreadsheet command every register offers.
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>

#include "core/archivio_sql.h"
#include "core/esportazione.h"
#include "output/screens/frmEsportaElenchi.h"
#include "output/screens/frmEsportaFatture.h"
#include "support/avvio_prova.h"
#include "support/sessione_prova.h"
#include "ui/RegistroBase.h"
#include "ui/VetraPicker.h"

using namespace prova;
namespace fs = std::filesystem;

namespace {

class SchermiEsporta : public EsercizioAperto {
protected:
    void SetUp() override {
        EsercizioAperto::SetUp();
        cartella = p.dati / "uscita";
        fs::create_directories(cartella);
        core::installaApriFile([this](const std::string& percorso) { aperti.push_back(percorso); });
        core::Archivio().Execute("Insert Into Clienti (ID,DescCliente) VALUES (3,'Verdi')");
        core::Archivio().Execute(
            "Insert Into Documenti (ID,Tipo,Numero,Data,Cliente,ImportoTotale) VALUES (1,5,4,'02/02/2026',3,122)");
    }
    void TearDown() override {
        core::installaApriFile(nullptr);
        core::installaAvanzamento(nullptr);
    }
    std::vector<std::string> messaggi() { return testiMostrati(*p.script); }

    fs::path cartella;
    std::vector<std::string> aperti;
};

TEST_F(SchermiEsporta, FattureRifiutaIDatiSbagliati) {
    struct Caso {
        const char* nome;
        std::function<void(frmEsportaFatture&)> prepara;
        std::string messaggio;
    } casi[] = {
        {"inizio vuoto", [](frmEsportaFatture& f) { f.pkDal->pulisci(); }, "Inserire una data di inizio periodo!"},
        {"periodo rovesciato",
         [](frmEsportaFatture& f) { f.pkDal->setValore(store::Value::Date(store::DateSerial(2027, 1, 1))); },
         "La data di inizio periodo è successiva alla data di fine periodo!"},
        {"nome con barra", [](frmEsportaFatture& f) { f.Text1->setText("fat/ture"); },
         "Il nome \"fat/ture\" non può essere usato per un file: non deve contenere i caratteri \\ / : * ? \" < > |"},
        {"nome vuoto", [](frmEsportaFatture& f) { f.Text2->setText("  "); }, "Indicare il nome del file!"},
        {"stesso nome", [](frmEsportaFatture& f) { f.Text2->setText("fats"); },
         "I file delle fatture e dei clienti devono avere nomi diversi!"},
    };
    for (const Caso& c : casi) {
        p.script->dimentica();
        frmEsportaFatture f;
        c.prepara(f);
        EXPECT_FALSE(f.Conferma()) << c.nome;
        EXPECT_EQ(messaggi(), std::vector<std::string>{c.messaggio}) << c.nome;
    }
    EXPECT_TRUE(fs::is_empty(cartella));
}

TEST_F(SchermiEsporta, FattureScritteNellaCartellaScelta) {
    frmEsportaFatture f;
    p.script->percorso(cartella.string());
    ASSERT_TRUE(f.Conferma());
    const fs::path fats = cartella / "FATS.txt";
    const fs::path anas = cartella / "ANAS.txt";
    EXPECT_EQ(messaggi(), std::vector<std::string>{"Fatture salvate in " + fats.string() + "\n" + "Clienti salvati in " +
                                                   anas.string()});
    EXPECT_EQ(test::LeggiFile(anas.string()), "\"0003\",\"Verdi\",\"\",\"\",\"\",\"\",\"\",\"\",\"\"\r\n");
}

TEST_F(SchermiEsporta, ElenchiRicordaLaScelta) {
    {
        // Citta (the fifth) up twice, DescCliente (the first) down once, then left out.
        frmEsportaElenchi f;
        f.lstCampi->setCurrentRow(4);
        f.Su();
        f.Su();
        f.lstCampi->setCurrentRow(0);
        f.Su();   // already at the top
        f.Giu();
        f.lstCampi->item(0)->setCheckState(Qt::Unchecked);
        f.SalvaImpostazioni();
        EXPECT_EQ(messaggi(), std::vector<std::string>{"Impostazioni salvate!"});
    }
    frmEsportaElenchi f;
    std::vector<std::string> nomi;
    for (int i = 0; i < 4; ++i) nomi.push_back(f.lstCampi->item(i)->text().toStdString());
    EXPECT_EQ(nomi, (std::vector<std::string>{"DescCliente2", "DescCliente", "Citta", "Indirizzo"}));
    EXPECT_EQ(f.lstCampi->item(0)->checkState(), Qt::Unchecked);

    // Only DescCliente and Citta, with the separator of the box; the name gets .txt.
    for (int i = 0; i < f.lstCampi->count(); ++i) {
        const QString nome = f.lstCampi->item(i)->text();
        f.lstCampi->item(i)->setCheckState(nome == "DescCliente" || nome == "Citta" ? Qt::Checked : Qt::Unchecked);
    }
    f.txtSep->setText("#");
    p.script->dimentica();
    p.script->percorso((cartella / "clienti").string());
    f.Conferma();
    const fs::path file = cartella / "clienti.txt";
    EXPECT_EQ(messaggi(), std::vector<std::string>{"File salvato su " + file.string()});
    EXPECT_EQ(test::LeggiFile(file.string()), "DescCliente#Citta\r\nVerdi#\r\n");

    f.txtSep->clear();
    p.script->dimentica();
    f.Conferma();
    EXPECT_EQ(messaggi(), std::vector<std::string>{"Indicare il carattere per la separazione dei campi"});
}

TEST_F(SchermiEsporta, OgniRegistroEsportaCioCheMostra) {
    auto registro = RegistriNoti().at("frmClienti")();
    registro->show();
    p.script->percorso((cartella / "clienti").string());
    clic(registro.get(), "btnEsportaExcel");
    const fs::path file = cartella / "clienti.xlsx";
    EXPECT_TRUE(fs::exists(file));
    EXPECT_EQ(aperti, std::vector<std::string>{file.string()});
    EXPECT_TRUE(messaggi().empty());
}

}  // namespace
