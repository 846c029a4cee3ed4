// The withholding certificates: the documents that carry a withholding, whether the certificate
// for each has come in, the register's filter and its search, and the print of one certificate.
#pragma once

#include <string>

#include "core/campi.h"
#include "core/stampa.h"

namespace store {
class Recordset;
}

namespace expenses {

const core::TabellaCampi& CampiCertificazioni();

inline constexpr const char* SorgenteCertificazioni = "Select * from qrCertificazioniAcconto ";

// The register's filter: the due dates of the withholding from and to, one single due date, the
// customer (one, or any with the box ticked and none picked), the state.
struct CriteriCertificazioni {
    bool dataDal = false, dataAl = false;
    std::string dal, al;    // the dates as typed
    std::string data;       // one due date; "" or "0.00.00" when none
    bool cliente = false;
    long idCliente = 0;
    int stato = 2;          // 0 not received, 1 received, other both
};

// The base statement with " where " and the conditions in use, or the base alone.
std::string IstruzioneCertificazioni(const CriteriCertificazioni& c);

// btnRicevuta: CertAcconto of the row becomes its contrary, through the row itself.
void InvertiRicevuta(store::Recordset& riga);

// The certificate of one document: section RitenutaAcconto, sub-report Elenco on that document.
core::RichiestaStampa StampaCertificazione(long id);

}  // namespace expenses
