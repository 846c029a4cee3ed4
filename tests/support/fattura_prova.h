// A realistic fattura for the showcase and the print benchmark: a customer with a long name, 30 lines
// at three VAT rates, a charge, a document discount, a withholding, three instalments (one paid), and a
// second, paid document of another customer. Document 1 is the fattura.
#pragma once

#include <string>

#include "core/archivio_sql.h"
#include "core/session.h"
#include "sales/totali.h"
#include "store/dao.h"
#include "ui/report/Motore.h"

namespace prova {

inline void FatturaRealistica(store::Database& db) {
    db.Execute("Insert Into CodiciIva (ID,DescIva,AliquotaIva) VALUES (1,'Ordinaria 22%',22)");
    db.Execute("Insert Into CodiciIva (ID,DescIva,AliquotaIva) VALUES (2,'Ridotta 10%',10)");
    db.Execute("Insert Into CodiciIva (ID,DescIva,AliquotaIva) VALUES (3,'Minima 4%',4)");
    db.Execute("Insert Into CondizioniPagamento (ID,DescPagamento,Rate) VALUES (1,'Bonifico bancario 30/60 gg d.f.f.m.',2)");
    db.Execute("Insert Into Clienti (ID,DescCliente,DescCliente2,Indirizzo,Cap,Citta,Provincia,Telefono,Fax,"
               "PartitaIva,CodiceFiscale,CondizioniPagamento) VALUES (1,'Studio Tecnico Associato Castellammare "
               "& Figli','Progettazione impianti civili e industriali','Via Giuseppe Garibaldi 128/B','20121',"
               "'Milano','MI','02 8765 4321','02 8765 4300','01234567890','01234567890',1)");
    db.Execute("Insert Into Clienti (ID,DescCliente,Citta) VALUES (2,'Bianchi Mario','Lodi')");
    db.Execute("Insert Into Documenti (ID,Tipo,Numero,Prefisso,Suffisso,Data,Cliente,CondizioniPagamento,"
               "Sconto1,RitenutaAcconto,Colli,Note,Pagato) VALUES (1,5,127,'','/A',#11/20/2026#,1,1,5,20,3,"
               "'Consegna presso il cantiere di via Manzoni.',False)");
    db.Execute("Insert Into Documenti (ID,Tipo,Numero,Prefisso,Suffisso,Data,Cliente,Pagato,ImportoTotale) "
               "VALUES (2,5,126,'','/A',#11/18/2026#,2,True,250)");
    const char* servizi[] = {"Manutenzione ordinaria caldaia a condensazione", "Sopralluogo tecnico",
                             "Sostituzione valvola termostatica", "Pulizia filtri impianto di climatizzazione",
                             "Verifica fumi e rilascio bollino"};
    for (int i = 1; i <= 30; ++i) {
        const std::string q = std::to_string(1 + i % 4), prezzo = std::to_string(35 + (i * 17) % 140) + ".5";
        db.Execute("Insert Into Movimenti (ID,Documento,DescMovimento,Quantita,PrezzoUnitario,Sconto1,Sconto2,"
                   "Importo,Iva) VALUES (" + std::to_string(i) + ",1,'" + servizi[i % 5] + "'," + q + "," + prezzo +
                   "," + (i % 3 == 0 ? "10" : "0") + ",0," + q + "*" + prezzo + (i % 3 == 0 ? "*0.9" : "") + "," +
                   std::to_string(1 + i % 3) + ")");
    }
    db.Execute("Insert Into SpeseDocumenti (ID,Documento,DescSpesa,Imponibile,Iva) VALUES (1,1,'Trasporto',25,1)");
    sales::CalcolaTotaliDocumento(1);
    const char* rate[] = {"#12/31/2026#,2000,1,3,True", "#01/31/2027#,2000,2,3,False", "#02/28/2027#,2445.74,3,3,False"};
    for (int i = 0; i < 3; ++i)
        db.Execute("Insert Into Scadenze (ID,Documento,Cliente,DescScadenza,DataScadenza,ImportoScadenza,Rata,Rate,"
                   "Pagata) VALUES (" + std::to_string(i + 1) + ",1,1,'Rata " + std::to_string(i + 1) + " fattura 127/A'," +
                   rate[i] + ")");
    db.Execute("Insert Into Pagamenti (ID,Documento,Scadenza,Cliente,DescPagamento,DataPagamento,ImportoPagamento) "
               "VALUES (1,1,1,1,'Bonifico rata 1',#11/23/2026#,2000)");
}

// The shipped fattura layout loaded on that document of the open archive, as the print screen fills it.
inline void StampaFattura(ui::report::Motore& m, long documento) {
    m.File = std::string(BREVANO_BIN_DIR) + "/Fatture.rpf";
    m.dbArchivio = core::ArchivioAperto();
    m.dbAziende = core::session().dbAziende;
    m.Azienda = core::session().IDAzienda;
    m.Carica();
    m.SubReport("Documento").query = "Select * from qrDocumenti where ID=" + std::to_string(documento);
    m.SubReport("Movimento").query = "Select * from qrMovimenti where Documento=" + std::to_string(documento);
}

}  // namespace prova
