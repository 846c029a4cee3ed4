// The layout editor as the print screen opens it on the shipped fattura: a change shows in the preview
// of the current data at once and is saved to the file; the keys and the mouse move what is chosen;
// closing with changes asks, and a failed save keeps the old file.
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QTest>

#include <filesystem>

#include "core/archivio_sql.h"
#include "core/file.h"
#include "output/screens/frmStampa.h"
#include "support/avvio_prova.h"
#include "support/sessione_prova.h"
#include "ui/report/EditorReport.h"

using namespace prova;
using namespace ui::report;
namespace fs = std::filesystem;

namespace {

class EditorFattura : public EsercizioAperto {
protected:
    void SetUp() override {
        EsercizioAperto::SetUp();
        file = core::CartellaReport() + "/Fatture.rpf";
        fs::create_directories(core::CartellaReport());
        fs::copy_file(fs::path(BREVANO_SOURCE_DIR) / "data/report/Fatture.rpf", file);
        originale = test::LeggiFile(file);
        core::session().dbAziende->Execute(
            "Insert Into FormReport (ID,Azienda,Sezione,Report,Predefinito) VALUES (110,1,'Fatture','Fatture.rpf',-1)");
        auto& a = core::Archivio();
        a.Execute("Insert Into Clienti (ID,DescCliente,Citta) VALUES (1,'Rossi Impianti srl','Roma')");
        a.Execute("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente,ImportoTotale) VALUES (1,5,17,#03/10/2026#,1,122)");
        a.Execute("Insert Into Movimenti (ID,Documento,DescMovimento,Quantita,PrezzoUnitario,Importo) "
                  "VALUES (1,1,'Manutenzione caldaia',1,100,100)");
    }

    // The editor as btnModifica opens it, shown, driven by azione.
    void Modifica(const std::function<void(frmEditorReport&)>& azione) {
        bool aperto = false;
        p.script->schermo("frmStampa", [&](QWidget* w) {
            p.script->schermo("frmEditorReport", [&](QWidget* e) {
                auto* editor = qobject_cast<frmEditorReport*>(e);
                aperto = editor != nullptr;
                if (!editor) return false;
                editor->show();
                editor->activateWindow();
                EXPECT_TRUE(QTest::qWaitForWindowActive(editor));
                azione(*editor);
                return false;
            });
            clic(w, "btnModifica");
            return false;
        });
        core::RichiestaStampa r;
        r.sezione = "Fatture";
        core::Stampa(r);
        EXPECT_TRUE(aperto) << (testiMostrati(*p.script).empty() ? "" : testiMostrati(*p.script)[0]);
    }

    static QPoint Centro(frmEditorReport& f, int banda, int elemento) {
        const EditorModello& ed = f.Editor();
        const Elemento& e = ed.banda(banda).elementi[elemento];
        const double s = f.Tela->PixelPerMm();
        return QPoint(static_cast<int>((ed.modello().pagina.sinistro + e.x + e.larghezza / 2) * s),
                      static_cast<int>((ed.Cima(banda) + e.y + e.altezza / 2) * s));
    }

    // The element whose text is the document's title, wherever the layout puts it.
    static Selezione Titolo(const EditorModello& ed) {
        for (int b = 0; b < ed.Bande(); ++b)
            for (int k = 0; k < static_cast<int>(ed.banda(b).elementi.size()); ++k)
                if (ed.banda(b).elementi[k].testo == "FATTURA") return {b, k};
        ADD_FAILURE() << "nessun testo FATTURA nel modello";
        return {};
    }

    // A text of the preview holds testo, or is it when intero.
    static bool InAnteprima(frmEditorReport& f, const std::string& testo, bool intero = false) {
        if (f.Anteprima().pagine.empty()) return false;
        for (const auto& p : f.Anteprima().pagine[0].primitive)
            if (intero ? p.testo == testo : p.testo.find(testo) != std::string::npos) return true;
        return false;
    }

    std::string file, originale;
};

}  // namespace

TEST_F(EditorFattura, UnTestoCambiatoSiVedeSubitoESiSalva) {
    Modifica([&](frmEditorReport& f) {
        // The fields of the list, of the document, of the company's master file and of a sub-report
        // that reads the document's ID; the preview with the data of all of them.
        for (const char* campo : {"DescMovimento", "Documento.Denominazione", "Azienda.Denominazione", "Iva.Imposta"})
            EXPECT_EQ(f.lstCampi->findItems(campo, Qt::MatchExactly).size(), 1) << campo;
        EXPECT_TRUE(InAnteprima(f, "Rossi Impianti srl"));
        EXPECT_TRUE(InAnteprima(f, "Manutenzione caldaia"));
        EXPECT_TRUE(InAnteprima(f, "Alfa", true));
        EXPECT_TRUE(f.lblAvvisi->text().isEmpty()) << f.lblAvvisi->text().toStdString();

        const Selezione titolo = Titolo(f.Editor());
        QTest::mouseClick(f.Tela, Qt::LeftButton, {}, Centro(f, titolo.banda, titolo.elemento));
        ASSERT_EQ(f.Editor().selezione(), titolo);
        EXPECT_EQ(f.txtTesto->text(), "FATTURA");
        f.txtTesto->setFocus();
        f.txtTesto->selectAll();
        QTest::keyClicks(f.txtTesto, "FATTURA PROFORMA");
        QTest::keyClick(f.txtTesto, Qt::Key_Return);
        EXPECT_TRUE(InAnteprima(f, "FATTURA PROFORMA", true));
        EXPECT_TRUE(f.windowTitle().endsWith("*"));
        EXPECT_EQ(test::LeggiFile(file), originale);

        QTest::keyClick(&f, Qt::Key_S, Qt::ControlModifier);
        EXPECT_FALSE(f.windowTitle().endsWith("*")) << (testiMostrati(*p.script).empty() ? "" : testiMostrati(*p.script)[0]);
    });
    EXPECT_TRUE(testiMostrati(*p.script).empty()) << testiMostrati(*p.script)[0];
    Modello atteso = Leggi(originale, "Fatture.rpf");
    for (auto& b : atteso.bande)
        for (auto& e : b.elementi)
            if (e.testo == "FATTURA") e.testo = "FATTURA PROFORMA";
    EXPECT_TRUE(Carica(file) == atteso) << test::LeggiFile(file);
}

TEST_F(EditorFattura, TastiEMouseSulDisegno) {
    struct Caso {
        const char* nome;
        int tasto;
        Qt::KeyboardModifiers modificatori;
        double dx, dy, dl, da;   // expected change of x, y, width, height
    };
    const double pt = UnPunto;
    const std::vector<Caso> casi{
        {"sinistra oltre il bordo", Qt::Key_Left, {}, 0, 0, 0, 0},   // first: nothing to undo or redo yet
        {"destra", Qt::Key_Right, {}, 0.35, 0, 0, 0},
        {"più basso", Qt::Key_Up, Qt::ControlModifier | Qt::ShiftModifier, 0, 0, 0, -10 * pt},
    };
    Modifica([&](frmEditorReport& f) {
        // The title: on the band's left edge, clear of its other edges, on half millimetres.
        const Selezione titolo = Titolo(f.Editor());
        const int banda = titolo.banda;
        for (const auto& c : casi) {
            QTest::mouseClick(f.Tela, Qt::LeftButton, {}, Centro(f, banda, titolo.elemento));
            const Elemento prima = *f.Editor().Selezionato();
            QTest::keyClick(f.Tela, static_cast<Qt::Key>(c.tasto), c.modificatori);
            const Elemento& dopo = *f.Editor().Selezionato();
            EXPECT_NEAR(dopo.x - prima.x, c.dx, 0.006) << c.nome;
            EXPECT_NEAR(dopo.y - prima.y, c.dy, 0.006) << c.nome;
            EXPECT_NEAR(dopo.larghezza - prima.larghezza, c.dl, 0.006) << c.nome;
            EXPECT_NEAR(dopo.altezza - prima.altezza, c.da, 0.006) << c.nome;
            const Elemento cambiato = dopo;
            QTest::keyClick(f.Tela, Qt::Key_Z, Qt::ControlModifier);
            EXPECT_TRUE(*f.Editor().Selezionato() == prima) << c.nome;
            QTest::keyClick(f.Tela, Qt::Key_Y, Qt::ControlModifier);
            EXPECT_TRUE(*f.Editor().Selezionato() == cambiato) << c.nome;
            QTest::keyClick(f.Tela, Qt::Key_Z, Qt::ControlModifier);
        }
        // Dragged by 10 mm right and 4.8 down: it lands on half millimetres, one step of undo, and the
        // preview follows once the mouse lets go.
        const QPoint da = Centro(f, banda, titolo.elemento);
        const Elemento prima = *f.Editor().Selezionato();
        const double s = f.Tela->PixelPerMm();
        const QPoint a = da + QPoint(static_cast<int>(10 * s + 0.5), static_cast<int>(4.8 * s + 0.5));
        QTest::mousePress(f.Tela, Qt::LeftButton, {}, da);
        for (int i = 1; i <= 4; ++i) {
            const QPointF qui(da + (a - da) * i / 4);
            QMouseEvent mossa(QEvent::MouseMove, qui, f.Tela->mapToGlobal(qui), Qt::NoButton, Qt::LeftButton, {});
            QApplication::sendEvent(f.Tela, &mossa);
        }
        QTest::mouseRelease(f.Tela, Qt::LeftButton, {}, a);
        EXPECT_DOUBLE_EQ(f.Editor().Selezionato()->x, prima.x + 10);
        EXPECT_DOUBLE_EQ(f.Editor().Selezionato()->y, prima.y + 5);
        QTest::keyClick(f.Tela, Qt::Key_Z, Qt::ControlModifier);
        EXPECT_TRUE(*f.Editor().Selezionato() == prima);

        // Every change undone: Esc closes without asking.
        QTest::keyClick(&f, Qt::Key_Escape);
        EXPECT_FALSE(f.isVisible());
    });
    EXPECT_TRUE(testiMostrati(*p.script).empty());
    EXPECT_EQ(test::LeggiFile(file), originale);
}

TEST_F(EditorFattura, ChiudereConModificheChiede) {
    struct Caso {
        const char* nome;
        int risposta;
        bool salvataggioImpossibile;
        bool chiuso, salvato;
        std::vector<std::string> dopo;   // the messages after the question
    };
    const std::vector<Caso> casi{
        {"sì", core::vbYes, false, true, true, {}},
        {"no", core::vbNo, false, true, false, {}},
        {"annulla", core::vbCancel, false, false, false, {}},
        {"sì ma il file non si scrive", core::vbYes, true, false, false,
         {"75; Fatture.rpf: il report non si può scrivere"}},
    };
    for (const auto& c : casi) {
        test::ScriviFile(file, originale);
        p.script->dimentica();
        if (c.salvataggioImpossibile) fs::create_directory(file + ".nuovo");
        bool chiuso = false;
        Modifica([&](frmEditorReport& f) {
            QObject::connect(&f, &QDialog::rejected, [&] { chiuso = true; });
            f.Editor().Seleziona(Titolo(f.Editor()));
            ASSERT_EQ(f.Editor().Imposta(Proprieta::Punti, "12"), "");
            f.Aggiorna();
            p.script->rispondi(c.risposta);
            clic(&f, "btnChiudi");
            EXPECT_EQ(f.windowTitle().endsWith("*"), !c.salvato) << c.nome;
        });
        fs::remove(file + ".nuovo");
        EXPECT_EQ(chiuso, c.chiuso) << c.nome;
        EXPECT_EQ(test::LeggiFile(file) != originale, c.salvato) << c.nome;
        const auto testi = testiMostrati(*p.script);
        ASSERT_FALSE(testi.empty()) << c.nome;
        EXPECT_EQ(std::vector<std::string>(testi.begin() + 1, testi.end()), c.dopo) << c.nome;
    }
}

TEST_F(EditorFattura, ImmagineSoloDallaCartellaDelleImmagini) {
    const fs::path immagini = fs::path(core::session().dbAziende->Name()).parent_path() / "Report" / "Immagini";
    fs::create_directories(immagini);
    QImage logo(40, 20, QImage::Format_RGB32);
    logo.fill(Qt::blue);
    ASSERT_TRUE(logo.save(QString::fromStdString((immagini / "logo.png").string())));
    ASSERT_TRUE(logo.save(QString::fromStdString(core::CartellaReport() + "/altrove.png")));
    struct Caso {
        std::optional<std::string> scelto;
        std::string file;        // of the new picture, "" when none is added
        std::string messaggio;   // "" when none is shown
    };
    const std::vector<Caso> casi{
        {std::nullopt, "", ""},
        {(immagini / "logo.png").string(), "logo.png", ""},
        {core::CartellaReport() + "/altrove.png", "", "L'immagine deve stare nella cartella delle immagini dei report"},
    };
    for (const auto& c : casi) {
        p.script->dimentica();
        p.script->percorso(c.scelto);
        if (!c.file.empty()) p.script->rispondiNo();   // leaves without saving
        Modifica([&](frmEditorReport& f) {
            f.Editor().Seleziona({0, -1});
            QTest::keyClick(&f, Qt::Key_5, Qt::ControlModifier);
            const Elemento* e = f.Editor().Selezionato();
            EXPECT_EQ(e ? e->file : std::string(), c.file);
            EXPECT_TRUE(f.lblAvvisi->text().isEmpty()) << f.lblAvvisi->text().toStdString();
            clic(&f, "btnChiudi");
        });
        const auto testi = testiMostrati(*p.script);
        // The question on closing, when a picture came in; the refusal otherwise.
        ASSERT_EQ(testi.size(), c.file.empty() && c.messaggio.empty() ? 0u : 1u);
        if (!c.messaggio.empty()) {
            EXPECT_EQ(testi[0].substr(0, c.messaggio.size()), c.messaggio);
        }
    }
}
