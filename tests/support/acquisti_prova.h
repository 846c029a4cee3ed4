// What the purchase side's screen tests share: the 2026 period open with every right, a VAT code at
// 22% and one at 10%, a supplier, a kind and a class of expense, and helpers to count and read rows.
#pragma once

#include <optional>
#include <string>

#include "core/archivio_sql.h"
#include "store/convert.h"
#include "support/avvio_prova.h"

namespace prova {

class Acquisti : public EsercizioAperto {
protected:
    void SetUp() override {
        EsercizioAperto::SetUp();
        db->Execute("Insert Into CodiciIva (ID,DescIva,AliquotaIva) VALUES (1,'Ordinaria 22%',22)");
        db->Execute("Insert Into CodiciIva (ID,DescIva,AliquotaIva) VALUES (2,'Ridotta 10%',10)");
        db->Execute("Insert Into Fornitori (ID,DescFornitore,Telefono,Cellulare) "
                    "VALUES (1,'Cartoleria dell''Olmo di Verdi Giuseppe & C. S.a.s.','06 5551234','333 1234567')");
        db->Execute("Insert Into TipiSpesa (ID,DescTipoSpesa) VALUES (1,'Cancelleria')");
        db->Execute("Insert Into ClassificazioniSpese (ID,DescClassificazione) VALUES (1,'Ufficio')");
    }

    // An expense of supplier 1; the date as the archive reads it, month first.
    void spesa(long id, const std::string& numero, const std::string& data, long fornitore = 1) {
        db->Execute("Insert Into Spese (ID,Numero,Data,Fornitore,TipoSpesa,Classificazione,Pagata) VALUES (" +
                    std::to_string(id) + ",'" + numero + "',#" + data + "#," + std::to_string(fornitore) + ",1,1,False)");
    }
    // An unpaid document with no prefix or suffix, its total as given (none: Null); the date month first.
    void documento(long id, long numero, const char* data, long cliente = 1, long tipo = 5,
                   std::optional<double> totale = std::nullopt) {
        db->Execute("Insert Into Documenti (ID,Tipo,Numero,Prefisso,Suffisso,Data,Cliente,ImportoTotale,Pagato) "
                    "VALUES (" + std::to_string(id) + "," + std::to_string(tipo) + "," + std::to_string(numero) +
                    ",'','',#" + data + "#," + std::to_string(cliente) + "," +
                    (totale ? core::NumeroSql(*totale) : "Null") + ",False)");
    }
    // Every right but the one at that position (0: all of them).
    static void senzaDiritto(int posizione) {
        core::session().Privilegi = std::string(14, '1');
        if (posizione) core::session().Privilegi[static_cast<size_t>(posizione - 1)] = '0';
    }
};

}  // namespace prova
