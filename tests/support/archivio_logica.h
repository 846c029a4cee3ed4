// A throw-away data folder for the tests of documents, expenses and payments: the master file with
// one Esercizio (the year 2026), the archive with every table and saved query of the model, a
// language file with the few texts these routines show, and the clock fixed at 15 June 2026.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "core/dialogs.h"
#include "core/session.h"
#include "core/archivio_sql.h"
#include "store/clock.h"
#include "store/convert.h"
#include "store/dao.h"
#include "store/model/model.h"
#include "support/cartella_temporanea.h"

namespace prova {

// The two files every test starts from, made once per run: building the model table by table costs
// far more than copying the result.
class FileModello {
public:
    static const FileModello& Uno() {
        static const FileModello modello;
        return modello;
    }
    std::string Aziende() const { return cartella_ / "Aziende.mdb"; }
    std::string Archivio() const { return cartella_ / "2026.mdb"; }

private:
    FileModello() {
        auto aziende = store::Workspace::Default().CreateDatabase(Aziende());
        store::model::CreaAziende(*aziende);
        aziende->Execute("Insert Into Esercizi (ID,Azienda,Nome,Dal,Al) VALUES (1,1,'2026','01/01/2026','31/12/2026')");
        aziende->Close();
        store::model::GeneraArchivioVuoto(Archivio());
    }
    test::CartellaTemporanea cartella_;
};

class ArchivioProva : public ::testing::Test {
protected:
    void SetUp() override {
        const FileModello& modello = FileModello::Uno();
        store::fissaOrologio(store::DateSerial(2026, 6, 15));
        core::session() = core::Session{};
        core::installDialogs(nullptr);
        auto& s = core::session();
        s.CartellaProgramma = cartella_.percorso();
        std::ofstream(cartella_ / "Lang.lng", std::ios::binary)
            << "[Stringhe]\r\ns14=Fatture\r\ns170=Saldo\r\ns226=Acconto\r\ns320=Preventivi\r\ns321=FATTURA\r\n"
               "s322=Scadenze aperte\r\ns323=Pagamenti presenti\r\ns81=Data non valida\r\ns212=Data mancante\r\n"
               "s213=Cliente mancante\r\ns214=Numero gia' usato\r\ns215=Numero fuori sequenza\r\n"
               "s288=Data fuori esercizio\r\n";
        std::filesystem::copy_file(modello.Aziende(), cartella_ / "Aziende.mdb");
        std::filesystem::copy_file(modello.Archivio(), cartella_ / "2026.mdb");
        s.dbAziende = store::Workspace::Default().OpenDatabase(cartella_ / "Aziende.mdb");
        s.IDAzienda = 1;
        s.IDEsercizio = 1;
        s.dbArchivio = store::Workspace::Default().OpenDatabase(cartella_ / "2026.mdb");
    }

    void TearDown() override {
        auto& s = core::session();
        if (s.dbArchivio) s.dbArchivio->Close();
        if (s.dbAziende) s.dbAziende->Close();
        core::session() = core::Session{};
        store::fissaOrologio(std::nullopt);
    }

    store::Database& db() { return *core::session().dbArchivio; }
    void Esegui(const std::string& sql) { db().Execute(sql); }

    // The first row's field of a statement; Null when there is no row.
    store::Value Valore(const std::string& sql, const std::string& campo) {
        auto rs = db().OpenRecordset(sql);
        return rs->Eof() ? store::Value() : rs->get(campo);
    }
    double Numero(const std::string& sql, const std::string& campo) { return store::CDbl(Valore(sql, campo)); }
    long Conta(const std::string& tabella, const std::string& where = "1=1") {
        return store::CLng(Valore("Select Count(*) as N from " + tabella + " where " + where, "N"));
    }

    void CodiceIva(long id, double aliquota) {
        Esegui("Insert Into CodiciIva (ID,DescIva,AliquotaIva) VALUES (" + std::to_string(id) + ",'Iva " +
               std::to_string(id) + "'," + Sql(aliquota) + ")");
    }

    struct Testata {
        long tipo = 5;
        long numero = 1;
        std::string data = "10/03/2026";
        std::string prefisso = "''";  // as SQL: '' or 'A' or Null
        std::string suffisso = "''";
        double s1 = 0, s2 = 0, s3 = 0, s4 = 0;
        double ritenuta = 0, maggiorazione = 0;
        double importoTotale = 0;
        long cliente = 1, fornitore = 0, condizioni = 0;
    };

    void Documento(long id, const Testata& t) {
        Esegui("Insert Into Documenti (ID,Tipo,Numero,Prefisso,Suffisso,Data,Cliente,Fornitore,CondizioniPagamento,"
               "Sconto1,Sconto2,Sconto3,Sconto4,RitenutaAcconto,Maggiorazione,ImportoTotale,Pagato) VALUES (" +
               std::to_string(id) + "," + std::to_string(t.tipo) + "," + std::to_string(t.numero) + "," + t.prefisso +
               "," + t.suffisso + ",'" + t.data + "'," + std::to_string(t.cliente) + "," + std::to_string(t.fornitore) +
               "," + std::to_string(t.condizioni) + "," + Sql(t.s1) + "," + Sql(t.s2) + "," + Sql(t.s3) + "," +
               Sql(t.s4) + "," + Sql(t.ritenuta) + "," + Sql(t.maggiorazione) + "," + Sql(t.importoTotale) + ",0)");
    }

    void Riga(long id, long documento, double importo, long iva) {
        Esegui("Insert Into Movimenti (ID,Documento,Importo,Iva) VALUES (" + std::to_string(id) + "," +
               std::to_string(documento) + "," + Sql(importo) + "," + std::to_string(iva) + ")");
    }

    void Onere(long id, long documento, double imponibile, long iva) {
        Esegui("Insert Into SpeseDocumenti (ID,Documento,Imponibile,Iva) VALUES (" + std::to_string(id) + "," +
               std::to_string(documento) + "," + Sql(imponibile) + "," + std::to_string(iva) + ")");
    }

    void Pagamento(long id, const std::string& legame, long verso, double importo, long cliente = 1) {
        Esegui("Insert Into Pagamenti (ID," + legame + ",Cliente,DataPagamento,ImportoPagamento) VALUES (" +
               std::to_string(id) + "," + std::to_string(verso) + "," + std::to_string(cliente) + ",'20/03/2026'," +
               Sql(importo) + ")");
    }

    static std::string Sql(double d) { return core::NumeroSql(d); }

private:
    test::CartellaTemporanea cartella_;
};

}  // namespace prova
