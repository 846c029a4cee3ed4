// The register of fatture as the grid lists it from the archive's saved query, by date and grouped by
// the customer's name: every row of the kind once, in the order of the statement, ties included
// (customers of the same name, documents of the same date, a document with no customer or with a
// customer that is gone), whichever index the database walks, read from the start or from the end.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/archivio_kit.h"
#include "store/convert.h"
#include "store/model/model.h"
#include "ui/VetraGrid.h"
#include "ui/griglia_support.h"

namespace {

using Righe = std::vector<std::string>;

class OrdineDocumenti : public ::testing::TestWithParam<bool> {
protected:
    // Two customers named alike (1 and 3) with documents on the same days, their ids crossing the
    // customers' order; a name that is a prefix of another; no customer (0) and a deleted one (99).
    void SetUp() override {
        store::model::CreaArchivio(*a.db);
        for (const char* c : {"1,'Rossi','Srl'", "2,'Bianchi',''", "3,'Rossi','Srl'", "4,'Rossi',''", "5,'Verdi','Spa'"})
            a.db->Execute(std::string("Insert Into Clienti (ID,DescCliente,DescCliente2) VALUES (") + c + ")");
        const long documenti[][3] = {{10, 5, 3}, {11, 5, 1}, {12, 5, 1}, {13, 5, 3}, {14, 5, 2}, {15, 6, 1},
                                     {16, 5, 0}, {17, 5, 99}, {18, 5, 4}, {19, 5, 5}, {20, 5, 1}, {21, 7, 2},
                                     {22, 5, 3}, {23, 5, 5}, {24, 5, 2}, {25, 5, 4}};
        const char* date[] = {"03/01", "03/01", "02/01", "02/01", "03/01", "01/01", "03/01", "01/15",
                              "03/01", "01/01", "03/01", "01/01", "03/01", "03/01", "01/15", "01/15"};
        for (int i = 0; i < 16; ++i)
            a.db->Execute("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente) VALUES (" +
                          std::to_string(documenti[i][0]) + "," + std::to_string(documenti[i][1]) + "," +
                          std::to_string(documenti[i][0]) + ",#" + date[i] + "/2024#," +
                          std::to_string(documenti[i][2]) + ")");
    }

    prova::ArchivioProva a;
};

TEST_P(OrdineDocumenti, LaGrigliaElencaLeFattureNellOrdineDellIstruzione) {
    const bool raggruppato = GetParam();
    // By date, ties by id; grouped, by the name the saved query joins (a missing customer: one blank).
    const Righe attese = raggruppato ? Righe{"# ", "17", "16", "#Bianchi ", "24", "14", "#Rossi ", "25", "18",
                                             "#Rossi Srl", "12", "13", "10", "11", "20", "22", "#Verdi Spa", "19", "23"}
                                     : Righe{"19", "17", "24", "25", "12", "13", "10", "11", "14", "16", "18", "20",
                                             "22", "23"};
    ui::VetraGrid g;
    g.resize(600, 300);
    g.setSorgente("Select * from qrDocumenti where Tipo=5");
    g.setOrdinamento("Data");
    g.aggiungiColonna({"Data", "Data", 1200, "dd/mm/yyyy"});
    if (raggruppato) g.aggiungiGruppo("Denominazione");
    g.Aggiorna();
    EXPECT_EQ(prova::righeGriglia(g), attese);
    // Read from its end (Ctrl+End) and up to its start, the list is the same.
    g.VaiAllUltima();
    EXPECT_EQ(prova::righeGriglia(g), attese);
}

INSTANTIATE_TEST_SUITE_P(PerDataEPerCliente, OrdineDocumenti, ::testing::Values(false, true));

}  // namespace
