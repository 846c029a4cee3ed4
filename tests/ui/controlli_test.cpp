// The input controls and the binding walk: what a user can type, what a box shows, and what each
// kind of control writes to its field.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include "support/archivio_kit.h"
#include "store/convert.h"
#include "ui/Acceleratori.h"
#include "ui/Legami.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraPicker.h"

namespace {

using store::Value;

TEST(VText, CaratteriAmmessiEMaschera) {
    prova::applicazioneDiProva();
    struct Caso {
        bool numerico;
        const char* ammessi;
        const char* maschera;
        const char* digitato;
        const char* atteso;
    };
    const Caso casi[] = {
        {false, "", "", "Ab1,-", "Ab1,-"},
        {true, "", "", "12a,5-", "12,5"},                 // no letters, no sign in a numeric box
        {false, "1234567890.", "", "8.30x", "8.30"},      // a time box
        {true, "", "#,0.00", "1234,5", "1.234,50"},       // the mask applies once the box is left
        {true, "", "", "12.5", "12,5"},                   // the point is the decimal comma
        {true, "", "", "12,5.", "12,5"},                  // a comma typed as such stays the only one
        {true, "", "", "1.234,56", "1.234,56"},           // a comma after the point: thousands
        {true, "1234567890.,-", "", "-0.5", "-0,5"},      // a line amount may be negative
    };
    for (const auto& c : casi) {
        ui::VText t;
        t.setNumerico(c.numerico);
        if (*c.ammessi) t.setCaratteriAmmessi(c.ammessi);
        if (*c.maschera) t.setMaschera(c.maschera);
        t.show();
        t.setFocus();
        QTest::keyClicks(&t, c.digitato);
        t.clearFocus();
        QFocusEvent uscita(QEvent::FocusOut);
        QApplication::sendEvent(&t, &uscita);
        EXPECT_EQ(t.testo(), c.atteso) << c.digitato;
    }
}

class Combo : public ::testing::Test {
protected:
    void SetUp() override {
        a.db->Execute("CREATE TABLE CodiciIva (ID LONG, DescIva TEXT(30), AliquotaIva DOUBLE)");
        for (const char* iva : {"1, 'Ordinaria', 22", "2, 'Esente', 0", "3, 'Ridotta', 10"})
            a.db->Execute(std::string("INSERT INTO CodiciIva (ID, DescIva, AliquotaIva) VALUES (") + iva + ")");
        cb.setSorgente("Select * from CodiciIva order by DescIva");
        cb.setColonne({{"DescIva", "Descrizione", 2000}, {"AliquotaIva", "Aliquota", 800, "#,0.00"}});
        cb.Aggiorna();
    }
    prova::ArchivioProva a;
    ui::VetraCombo cb;
};

TEST_F(Combo, ValoreTestoAltreColonneETestoLibero) {
    EXPECT_TRUE(cb.valore().isNull());   // nothing chosen until told
    cb.setValore(Value::Long(3));
    EXPECT_EQ(cb.testo(), "Ridotta");
    EXPECT_EQ(store::CDbl(cb.campo("AliquotaIva")), 10);
    EXPECT_EQ(cb.model()->data(cb.model()->index(cb.currentIndex(), 1)).toString(), "10,00");
    cb.setValore(Value::Long(0));        // a value with no row leaves nothing chosen
    EXPECT_TRUE(cb.valore().isNull());
    // A refresh keeps the choice, and shows a row added meanwhile.
    cb.setValore(Value::Long(1));
    a.db->Execute("INSERT INTO CodiciIva (ID, DescIva, AliquotaIva) VALUES (4, 'Agevolata', 4)");
    cb.Aggiorna();
    EXPECT_EQ(cb.count(), 4);
    EXPECT_EQ(store::CLng(cb.valore()), 1);

    ui::VetraCombo aperta;
    aperta.setAperta(true);
    aperta.aggiungiVoce(Value::Text("A"), "A");
    aperta.setTesto("NUOVO");
    EXPECT_EQ(store::ConcatText(aperta.valore()), "NUOVO");
    aperta.setTesto("");
    EXPECT_TRUE(aperta.valore().isNull());
}

TEST_F(Combo, IlGiroDeiControlliLegati) {
    a.db->Execute("CREATE TABLE Righe (ID LONG, DescRiga TEXT(12), Importo DOUBLE, Iva LONG, Data DATETIME, "
                  "Fatto YESNO, Quanti LONG)");
    a.db->Execute("INSERT INTO Righe (ID, DescRiga, Importo, Iva, Data, Fatto, Quanti) VALUES "
                  "(1, 'Prima', 1234.5, 3, #03/05/2024#, True, 7)");
    QWidget schermo;
    auto* desc = new ui::VText(&schermo);
    desc->setDataField("DescRiga");
    auto* importo = new ui::VText(&schermo);
    importo->setDataField("Importo");
    importo->setNumerico(true);
    importo->setMaschera("#,0.00");
    auto* quanti = new ui::VText(&schermo);
    quanti->setDataField("Quanti");
    quanti->setNumerico(true);
    auto* iva = new ui::VetraCombo(&schermo);
    iva->setCampoDestinazione("Iva");
    iva->setSorgente("Select * from CodiciIva order by DescIva");
    iva->Aggiorna();
    auto* data = new ui::VetraPicker(&schermo);
    data->setDataField("Data");
    auto* fatto = new QCheckBox(&schermo);
    fatto->setProperty("DataField", "Fatto");
    new QLabel("non legata", &schermo);
    ASSERT_EQ(ui::controlliLegati(&schermo).size(), 6u);

    auto rs = a.db->OpenRecordset("Select * from Righe where ID=1");
    ui::caricaControlli(&schermo, *rs);
    using Testi = std::vector<std::string>;
    EXPECT_EQ((Testi{desc->testo(), importo->testo(), quanti->testo(), iva->testo(), data->testo()}),
              (Testi{"Prima", "1.234,50", "7", "Ridotta", "05/03/2024"}));
    EXPECT_EQ(desc->maxLength(), 12);
    EXPECT_TRUE(fatto->isChecked());

    desc->setTesto("Seconda");
    importo->setTesto("2.000,25");
    quanti->setTesto("");
    iva->setValore(Value::Null());
    data->pulisci();
    fatto->setChecked(false);
    rs->Edit();
    ui::salvaControlli(&schermo, *rs);
    rs->Update();
    auto letto = a.db->OpenRecordset("Select * from Righe where ID=1");
    // A blank numeric box and a combo with no choice write 0, a blank picker Null.
    std::string riga;
    for (const char* campo : {"DescRiga", "Importo", "Quanti", "Iva", "Data", "Fatto"})
        riga += store::ConcatText(letto->get(campo)) + "|";
    EXPECT_EQ(riga, "Seconda|2000,25|0|0||Falso|");
}

// Every command gets a letter of its own: fixed accelerators of buttons, tabs and labels are kept
// and never given twice; a caption with no free letter stays as it is.
TEST(Acceleratori, UnaLetteraPerComando) {
    prova::applicazioneDiProva();
    QWidget finestra;
    auto* schede = new QTabWidget(&finestra);
    schede->addTab(new QWidget, "&Righe");
    auto* etichetta = new QLabel("&Cerca", &finestra);
    etichetta->setBuddy(schede);
    const char* const testi[] = {"Nuovo", "Nuovo", "Ricerca", "&Elimina", "Cerca", "", "nr", "A && B"};
    std::vector<QPushButton*> b;
    for (const char* t : testi) b.push_back(new QPushButton(t, &finestra));
    // Two pages of the tabs are never on screen together: their commands may share a letter.
    auto* pagina1 = new QWidget;
    auto* pagina2 = new QWidget;
    schede->addTab(pagina1, "Uno");
    schede->addTab(pagina2, "Due");
    for (QWidget* pagina : {pagina1, pagina2}) b.push_back(new QPushButton("Modifica", pagina));
    ui::assegnaAcceleratori(&finestra);
    std::vector<std::string> dopo;
    for (QPushButton* x : b) dopo.push_back(x->text().toStdString());
    EXPECT_EQ(dopo, (std::vector<std::string>{"&Nuovo", "N&uovo", "R&icerca", "&Elimina", "Cerc&a", "", "nr",
                                              "A && &B", "&Modifica", "&Modifica"}));
}

}  // namespace
