// Customers and services as the user meets them: the editors' checks and rows written, the
// delete guards, the services' search and print, and the call link.
#include <QCheckBox>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QUrl>

#include "core/diritti.h"
#include "core/stampa.h"
#include "sales/screens/frmClienti.h"
#include "sales/screens/frmServizi.h"
#include "support/registro_prova.h"
#include "ui/Dettaglio.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"

namespace {

using pattern::clicca;
using pattern::scrivi;
using pattern::trova;

const char* kMovimentato = "Impossibile eliminare. Il record risulta movimentato nelle seguenti tabelle:\r\n";

class Anagrafiche : public pattern::Archivio {
protected:
    std::string testo(const std::string& sql, const std::string& nome) { return store::ConcatText(campo(sql, nome)); }

    // Confirms the editor as shown; a refusal must show its message and leave the table empty.
    template <class Editor>
    std::optional<long> conferma(Editor& e, const char* messaggio, const char* tabella) {
        script->schermo(Editor::Nome, [](QWidget* w) {
            clicca(w, "btnConferma");
            return true;
        });
        const std::optional<long> id = e.Mostra();
        if (*messaggio) {
            EXPECT_FALSE(id);
            EXPECT_EQ(ultimoMessaggio().testo, messaggio);
            EXPECT_EQ(conta(tabella), 0);
        }
        return id;
    }
};

// The customer's editor: the one required field, texts kept as typed, discounts read with a comma or
// a point and letters refused by the box.
TEST_F(Anagrafiche, ClienteEditorControlliERigheScritte) {
    struct Caso {
        const char* nome;
        QString denominazione;
        QString sconto;
        const char* messaggio;   // "" when the customer is saved
        std::string salvato;
        double sconto1;
    };
    const QString lungo(10000, 'x');
    const Caso casi[] = {
        {"vuota", "", "5", "La denominazione non è stata inserita!", "", 0},
        {"solo spazi", "   ", "5", "La denominazione non è stata inserita!", "", 0},
        {"apici", "Bar dell'Angolo \"Da Gino\"", "12,5", "", "Bar dell'Angolo \"Da Gino\"", 12.5},
        {"lettere nello sconto", "Bianchi", "abc", "", "Bianchi", 0},
        {"testo lunghissimo", lungo, "0", "", std::string(100, 'x'), 0},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        db->Execute("DELETE FROM Clienti");
        script->dimentica();
        frmClientiEdita e;
        e.EditaRecordset(0, true);
        e.VText1->setText(c.denominazione);
        scrivi(&e, "VText20", c.sconto);
        scrivi(&e, "VText2", "Via dell'Olmo 3");
        e.Text1->setPlainText("Nota con 'apici'");
        const std::optional<long> id = conferma(e, c.messaggio, "Clienti");
        if (*c.messaggio) continue;
        ASSERT_TRUE(id);
        const std::string riga = "Select * from Clienti where ID=" + std::to_string(*id);
        EXPECT_EQ(testo(riga, "DescCliente"), c.salvato);
        EXPECT_EQ(testo(riga, "Indirizzo"), "Via dell'Olmo 3");
        EXPECT_EQ(testo(riga, "Note"), "Nota con 'apici'");
        EXPECT_DOUBLE_EQ(store::CDbl(campo(riga, "Sconto1")), c.sconto1);
    }
}

// Deleting a customer: the first table that uses it says why not; unused, the question and the delete.
TEST_F(Anagrafiche, ClienteEliminaGuardiaEDomanda) {
    struct Caso {
        const char* inserimento;   // a row that uses customer 1, or ""
        std::string messaggio;
        long restano;
    };
    const Caso casi[] = {
        {"INSERT INTO Documenti (ID, Tipo, Cliente) VALUES (1, 5, 1)", std::string(kMovimentato) + "1) Documenti\r\n", 1},
        {"", "Eliminare il cliente Rossi Mario?", 0},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.messaggio);
        for (const char* t : {"Clienti", "Documenti", "Pagamenti", "Scadenze"}) db->Execute(std::string("DELETE FROM ") + t);
        db->Execute("INSERT INTO Clienti (ID, DescCliente, DescCliente2) VALUES (1, 'Rossi Mario', 'srl')");
        if (*c.inserimento) db->Execute(c.inserimento);
        frmClienti r;
        script->dimentica();
        script->rispondiSi();
        clicca(&r, "btnElimina");
        EXPECT_EQ(ultimoMessaggio().testo, c.messaggio);
        EXPECT_EQ(conta("Clienti"), c.restano);
    }
}

// The call menu hands "sip:" and the number to the desktop, blank number or not.
TEST_F(Anagrafiche, ClienteChiamataVoip) {
    db->Execute("INSERT INTO Clienti (ID, DescCliente, Telefono, Cellulare) VALUES (1, 'A', '+39 06 123', '333 4')");
    db->Execute("INSERT INTO Clienti (ID, DescCliente) VALUES (2, 'B')");
    std::vector<std::string> aperti;
    frmClienti::apriLink = [&aperti](const QUrl& u) { aperti.push_back(u.toString().toStdString()); };
    frmClienti r;
    r.Chiama("Telefono");
    r.Chiama("Cellulare");
    r.griglia()->vaiAId(2);
    r.Chiama("Telefono");
    frmClienti::apriLink = nullptr;
    EXPECT_EQ(aperti, (std::vector<std::string>{"sip:+39 06 123", "sip:333 4", "sip:"}));
}

// The service's editor: description and VAT code required; the price as typed; the print flag.
TEST_F(Anagrafiche, ServizioEditorControlliERigheScritte) {
    db->Execute("INSERT INTO CodiciIva (ID, DescIva, AliquotaIva) VALUES (1, 'Iva 22%', 22)");
    struct Caso {
        const char* nome;
        QString descrizione;
        bool conIva;
        QString prezzo;
        const char* messaggio;
        double costo;
    };
    const Caso casi[] = {
        {"senza descrizione", " ", true, "10", "Inserire la descrizione!", 0},
        {"senza iva", "Assistenza", false, "10", "Selezionare il codice IVA!", 0},
        {"prezzo con virgola", "Manutenzione d'impianto", true, "1.234,567", "", 1234.567},
        {"lettere nel prezzo", "Sopralluogo \"urgente\"", true, "abc", "", 0},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        db->Execute("DELETE FROM Servizi");
        script->dimentica();
        frmServiziEdita e;
        e.EditaRecordset(0, true);
        EXPECT_EQ(e.txtPrezzoBase->testo(), "0,000");
        e.VText1->setText(c.descrizione);
        scrivi(&e, "txtPrezzoBase", c.prezzo);
        if (c.conIva) e.cbIva->setValore(store::Value::Long(1));
        e.Check1->setChecked(true);
        const std::optional<long> id = conferma(e, c.messaggio, "Servizi");
        if (*c.messaggio) continue;
        ASSERT_TRUE(id) << ultimoMessaggio().testo << " " << e.txtPrezzoBase->testo();
        const std::string riga = "Select * from Servizi where ID=" + std::to_string(*id);
        EXPECT_EQ(testo(riga, "DescServizio"), c.descrizione.toStdString());
        EXPECT_DOUBLE_EQ(store::CDbl(campo(riga, "CostoUnitario")), c.costo);
        EXPECT_EQ(store::CLng(campo(riga, "CodiceIva")), 1);
        EXPECT_TRUE(store::CBool(campo(riga, "NonStampare")));
    }
}

// A service on a line stays; one only on a visit goes after the question. The search runs as typed.
TEST_F(Anagrafiche, ServizioEliminaERicerca) {
    db->Execute("INSERT INTO Servizi (ID, DescServizio, CodiceInterno) VALUES (1, 'Posa d''opera', 'P1')");
    db->Execute("INSERT INTO Servizi (ID, DescServizio, CodiceInterno) VALUES (2, 'Visita', 'V1')");
    db->Execute("INSERT INTO Movimenti (ID, Servizio) VALUES (1, 1)");
    db->Execute("INSERT INTO Assistenze (ID, Servizio) VALUES (1, 2)");
    frmServizi r;
    scrivi(&r, "txtCerca", "d'");
    EXPECT_EQ(r.griglia()->righeMostrate(), 1);
    trova<QComboBox>(&r, "cbCerca")->setCurrentIndex(1);
    scrivi(&r, "txtCerca", "V");
    EXPECT_EQ(r.griglia()->righeMostrate(), 1);
    trova<QLineEdit>(&r, "txtCerca")->clear();

    r.griglia()->vaiAId(1);
    script->rispondiSi();
    clicca(&r, "btnElimina");
    EXPECT_EQ(ultimoMessaggio().testo, std::string(kMovimentato) + "1) Documenti\r\n");
    EXPECT_EQ(conta("Servizi"), 2);
    r.griglia()->vaiAId(2);
    script->rispondiSi();
    clicca(&r, "btnElimina");
    EXPECT_EQ(ultimoMessaggio().testo, "Eliminare il servizio Visita?");
    EXPECT_EQ(conta("Servizi"), 1);
}

// The print of the services: the list as it stands, searched; the services marked out of print
// stay off the paper but not off the screen.
TEST_F(Anagrafiche, StampaDegliElenchi) {
    db->Execute("INSERT INTO Servizi (ID, DescServizio, NonStampare) VALUES (1, 'Posa', False)");
    db->Execute("INSERT INTO Servizi (ID, DescServizio, NonStampare) VALUES (2, 'Posa interna', True)");
    db->Execute("INSERT INTO Servizi (ID, DescServizio, NonStampare) VALUES (3, 'Visita', False)");
    std::vector<core::RichiestaStampa> stampe;
    core::installaStampa([&stampe](const core::RichiestaStampa& s) { stampe.push_back(s); });
    frmServizi servizi;
    scrivi(&servizi, "txtCerca", "Posa");
    EXPECT_EQ(servizi.griglia()->righeMostrate(), 2);
    clicca(&servizi, "btnStampa");
    ASSERT_EQ(stampe.size(), 1u);
    const std::string elenco = stampe[0].subReports.Item("Elenco")->Query;
    std::vector<std::string> stampati;
    for (auto rs = db->OpenRecordset(elenco); !rs->Eof(); rs->MoveNext())
        stampati.push_back(store::ConcatText(rs->get("DescServizio")));
    EXPECT_EQ(stampati, std::vector<std::string>{"Posa"});
    core::installaStampa(nullptr);
}

}  // namespace
