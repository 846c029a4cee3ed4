#include "output/esporta_elenchi.h"

#include "core/archivio_sql.h"
#include "core/esportazione.h"
#include "core/varie.h"
#include "store/convert.h"
#include "store/format.h"

namespace output {

namespace {

// The default fields of a list, from Posizione 2 on; the name fields differ, the others are shared.
void ScriviPredefiniti(store::Database& db, const std::string& elenco) {
    const std::string desc = elenco == "Clienti" ? "DescCliente" : "DescFornitore";
    const std::vector<std::string> campi = {desc,      desc + "2", "Indirizzo",     "Cap",        "Citta", "Provincia",
                                            "Telefono", "Fax",     "Cellulare",     "CodiceFiscale", "PartitaIva",
                                            "Banca",   "Abi",      "Cab",           "NumeroConto", "mail", "web"};
    auto massimo = db.OpenRecordset("Select Max(ID) from EsportazioneCampi");
    long id = static_cast<long>(core::NumeroOZero(massimo->Fields(0).value()));
    long posizione = 2;
    for (const std::string& campo : campi) {
        db.Execute("Insert into EsportazioneCampi (ID,Posizione,Sezione,Includi,Campo) VALUES (" + std::to_string(++id) +
                   "," + std::to_string(posizione++) + ",'" + core::Apici(elenco) + "',1,'" + campo + "')");
    }
}

std::vector<CampoEsportato> Leggi(store::Database& db, const std::string& elenco) {
    std::vector<CampoEsportato> campi;
    auto rs = db.OpenRecordset("Select * from EsportazioneCampi where Sezione='" + core::Apici(elenco) +
                               "' Order By Posizione");
    for (; !rs->Eof(); rs->MoveNext()) {
        const store::Value campo = rs->get("Campo");
        campi.push_back({campo.isNull() ? std::string() : store::CStr(campo), core::NumeroOZero(rs->get("Includi")) != 0,
                         static_cast<long>(core::NumeroOZero(rs->get("ID")))});
    }
    return campi;
}

std::string Valore(const store::Value& v) {
    std::string testo = v.isNull() ? std::string() : store::CStr(v);
    for (char& c : testo)
        if (c == '\r' || c == '\n') c = ' ';
    return testo;
}

}  // namespace

std::vector<CampoEsportato> CaricaCampiEsportati(store::Database& db, const std::string& elenco) {
    std::vector<CampoEsportato> campi = Leggi(db, elenco);
    if (!campi.empty()) return campi;
    ScriviPredefiniti(db, elenco);
    return Leggi(db, elenco);
}

void SalvaCampiEsportati(store::Database& db, const std::vector<CampoEsportato>& campi) {
    for (std::size_t i = 0; i < campi.size(); ++i)
        db.Execute("Update EsportazioneCampi set Includi=" + std::string(campi[i].incluso ? "1" : "0") +
                   ", Posizione=" + std::to_string(i + 1) + " Where ID=" + std::to_string(campi[i].id));
}

long EsportaElenco(store::Database& db, const std::string& elenco, const std::vector<CampoEsportato>& campi,
                   const std::string& separatore, const std::string& percorso) {
    if (campi.empty()) throw core::ErroreEsportazione("L'elenco " + elenco + " non ha campi da esportare!");
    core::FileEsportazione file(percorso);
    auto rs = db.OpenRecordset("Select * from " + elenco + " Order By " + campi.front().campo);
    std::vector<store::Field*> inclusi;
    std::string riga;
    for (const CampoEsportato& c : campi) {
        if (!c.incluso) continue;
        if (!inclusi.empty()) riga += separatore;
        riga += c.campo;
        inclusi.push_back(&rs->Fields(c.campo));
    }
    std::string blocco = store::Utf8ToCp1252(riga) + "\r\n";
    long righe = 0;
    for (; !rs->Eof(); rs->MoveNext(), ++righe) {
        riga.clear();
        for (std::size_t i = 0; i < inclusi.size(); ++i) {
            if (i > 0) riga += separatore;
            riga += Valore(inclusi[i]->value());
        }
        blocco += store::Utf8ToCp1252(riga);
        blocco += "\r\n";
        if (blocco.size() > (1 << 16)) {
            file.Scrivi(blocco);
            blocco.clear();
        }
    }
    file.Scrivi(blocco);
    file.Concludi();
    return righe;
}

}  // namespace output
