// The register of fatture as the grid lists it from the archive's saved query, by date and grouped by
// the customer's name: every row of the kind once, in the order of the statement, ties included
// (customers of the same name, documents of the same date, a document with no customer or with a
// customer that is gone), whichever index the database walks, read from the start or from the end.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "support/archivio_kit.h"
#include "store/convert.h"
#include "store/model/model.h"
#include "ui/VetraGrid.h"

namespace {

struct Cliente {
    long id;
    const char* nome;
    const char* nome2;
};

struct Documento {
    long id;
    long tipo;
    long cliente;
    const char* data;   // mm/dd/yyyy
};

// Two customers named alike (1 and 3) with documents on the same days, their ids crossing the
// customers' order; a name that is a prefix of another; no customer (0) and a deleted one (99).
const Cliente kClienti[] = {{1, "Rossi", "Srl"}, {2, "Bianchi", ""}, {3, "Rossi", "Srl"}, {4, "Rossi", ""},
                            {5, "Verdi", "Spa"}};
const Documento kDocumenti[] = {
    {10, 5, 3, "03/01/2024"}, {11, 5, 1, "03/01/2024"}, {12, 5, 1, "02/01/2024"}, {13, 5, 3, "02/01/2024"},
    {14, 5, 2, "03/01/2024"}, {15, 6, 1, "01/01/2024"}, {16, 5, 0, "03/01/2024"}, {17, 5, 99, "01/15/2024"},
    {18, 5, 4, "03/01/2024"}, {19, 5, 5, "01/01/2024"}, {20, 5, 1, "03/01/2024"}, {21, 7, 2, "01/01/2024"},
    {22, 5, 3, "03/01/2024"}, {23, 5, 5, "03/01/2024"}, {24, 5, 2, "01/15/2024"}, {25, 5, 4, "01/15/2024"},
};

std::string iso(const char* mdy) {
    const std::string s = mdy;
    return s.substr(6, 4) + s.substr(0, 2) + s.substr(3, 2);
}

// The customer's name as the saved query joins it: a missing customer gives a single blank.
std::string nome(long cliente) {
    for (const Cliente& c : kClienti)
        if (c.id == cliente) return std::string(c.nome) + " " + c.nome2;
    return " ";
}

// The ids of the fatture in the order expected, independent of the grid and of the database: by the
// group's name (none here differ only in case), then by date, ties by id. Group captions as "#name".
std::vector<std::string> attesi(bool raggruppato) {
    std::vector<const Documento*> fatture;
    for (const Documento& d : kDocumenti)
        if (d.tipo == 5) fatture.push_back(&d);
    std::sort(fatture.begin(), fatture.end(), [&](const Documento* a, const Documento* b) {
        auto chiave = [&](const Documento* d) {
            return std::make_tuple(raggruppato ? nome(d->cliente) : "", iso(d->data), d->id);
        };
        return chiave(a) < chiave(b);
    });
    std::vector<std::string> out;
    std::string gruppo = "\x01";
    for (const Documento* d : fatture) {
        if (raggruppato && nome(d->cliente) != gruppo) {
            gruppo = nome(d->cliente);
            out.push_back("#" + gruppo);
        }
        out.push_back(std::to_string(d->id));
    }
    return out;
}

class OrdineDocumenti : public ::testing::TestWithParam<bool> {
protected:
    void SetUp() override {
        store::model::CreaArchivio(*a.db);
        for (const Cliente& c : kClienti)
            a.db->Execute("Insert Into Clienti (ID,DescCliente,DescCliente2) VALUES (" + std::to_string(c.id) + ",'" +
                          c.nome + "','" + c.nome2 + "')");
        for (const Documento& d : kDocumenti)
            a.db->Execute("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente) VALUES (" + std::to_string(d.id) + "," +
                          std::to_string(d.tipo) + "," + std::to_string(d.id) + ",#" + d.data + "#," +
                          std::to_string(d.cliente) + ")");
    }

    // Every row of the grid, read to its end: ids, and captions as "#caption".
    static std::vector<std::string> righe(ui::VetraGrid& g) {
        ui::VetraGridModel* m = g.modello();
        while (m->canFetchMore({})) m->fetchMore({});
        std::vector<std::string> out;
        for (int r = 0; r < m->rowCount(); ++r) {
            if (m->rigaDiGruppo(r)) out.push_back("#" + m->data(m->index(r, 0), Qt::DisplayRole).toString().toStdString());
            else out.push_back(std::to_string(store::CLng(m->valore(r, "ID"))));
        }
        return out;
    }

    prova::ArchivioProva a;
};

// The grid of the register, with the definition the screen gives it.
TEST_P(OrdineDocumenti, LaGrigliaElencaLeFattureNellOrdineDellIstruzione) {
    const bool raggruppato = GetParam();
    ui::VetraGrid g;
    g.resize(600, 300);
    g.setSorgente("Select * from qrDocumenti where Tipo=5");
    g.setOrdinamento("Data");
    g.aggiungiColonna({"Data", "Data", 1200, "dd/mm/yyyy"});
    g.aggiungiColonna({"Numero", "Numero", 800});
    if (raggruppato) g.aggiungiGruppo("Denominazione");
    g.Aggiorna();
    EXPECT_EQ(righe(g), attesi(raggruppato));
    // Read from its end (Ctrl+End) and up to its start, the list is the same.
    g.VaiAllUltima();
    while (g.modello()->puoLeggereSopra()) g.modello()->leggiSopra();
    EXPECT_EQ(righe(g), attesi(raggruppato));

    // The statement read on its own gives the same rows in the same order.
    std::vector<std::string> istruzione;
    for (auto rs = a.db->OpenRecordset(g.istruzione()); !rs->Eof(); rs->MoveNext())
        istruzione.push_back(std::to_string(store::CLng(rs->get("ID"))));
    std::vector<std::string> dati = attesi(raggruppato);
    dati.erase(std::remove_if(dati.begin(), dati.end(), [](const std::string& s) { return s[0] == '#'; }), dati.end());
    EXPECT_EQ(istruzione, dati);
}

INSTANTIATE_TEST_SUITE_P(PerDataEPerCliente, OrdineDocumenti, ::testing::Values(false, true));

}  // namespace
