#include "output/esporta_fatture.h"

#include <unordered_map>

#include "core/archivio_sql.h"
#include "core/esportazione.h"
#include "store/convert.h"
#include "store/format.h"

namespace output {

namespace {

// A line break inside a value would split the record: it becomes a blank.
std::string SenzaACapo(std::string testo) {
    for (char& c : testo)
        if (c == '\r' || c == '\n') c = ' ';
    return testo;
}

std::string Tra(const std::string& testo) { return "\"" + testo + "\""; }

std::string Sostituisci(std::string testo, char da, const std::string& con) {
    std::string out;
    out.reserve(testo.size());
    for (char c : testo) {
        if (c == da) out += con;
        else out += c;
    }
    return out;
}

// Year, month, day each at least two digits: yyyymmdd for any year from 1000.
std::string DataCompatta(const store::Value& data) {
    if (data.isNull()) return {};
    const store::DateParts p = store::SplitDate(store::CDbl(data));
    auto due = [](int n) { return store::Format(store::Value::Long(n), "00"); };
    return (due(p.year) + due(p.month) + due(p.day)).substr(0, 8);
}

std::string Importo(const store::Value& v) { return Sostituisci(store::Format(v, "#,0.00"), ',', "."); }

std::string Allineato(const std::string& testo, std::size_t larghezza) {
    return std::string(larghezza - testo.size(), ' ') + testo;
}

std::string Testo(const store::Value& v) { return v.isNull() ? std::string() : store::CStr(v); }

// A text field of the customers file: Windows-1252, cut to its width, never padded.
std::string Campo(const store::Value& v, std::size_t larghezza) {
    return Tra(store::Utf8ToCp1252(SenzaACapo(Testo(v))).substr(0, larghezza));
}

// One line per row, CR LF after each, written in blocks; the progress is told per row.
long ScriviRighe(store::Recordset& rs, core::FileEsportazione& file,
                 const std::function<std::string(store::Recordset&)>& riga,
                 const std::function<void(long fatti, long totale)>& avanza) {
    long totale = 0;
    if (!rs.Eof()) {
        rs.MoveLast();
        totale = rs.RecordCount();
        rs.MoveFirst();
    }
    std::string blocco;
    long fatti = 0;
    for (; !rs.Eof(); rs.MoveNext()) {
        blocco += riga(rs);
        blocco += "\r\n";
        if (blocco.size() > (1 << 16)) {
            file.Scrivi(blocco);
            blocco.clear();
        }
        avanza(++fatti, totale);
    }
    file.Scrivi(blocco);
    return fatti;
}

}  // namespace

std::string RigaFattura(store::Recordset& documento, const store::Value& aliquotaIva, const store::Value& descIva) {
    const std::string numero = Testo(documento.get("Numero"));
    if (numero.size() > 5)
        throw core::ErroreEsportazione("Il documento numero " + numero + " del " + Testo(documento.get("Data")) +
                                       " ha un numero di più di cinque cifre: il file delle fatture non lo può contenere.");
    const std::string data = DataCompatta(documento.get("Data"));
    const std::string iva = descIva.isNull() ? std::string("0") : SenzaACapo(Testo(descIva));
    const store::Value aliquota = aliquotaIva.isNull() ? store::Value::Long(0) : aliquotaIva;
    std::string r;
    r.reserve(160);
    r += Tra(Allineato(numero, 5)) + ",";
    r += data + ",";
    r += Tra(Allineato(numero, 10)) + ",";
    r += data + ",";
    r += "\"3\",";
    r += Tra(store::Format(documento.get("Cliente"), "0000")) + ",";
    r += Importo(documento.get("ImportoTotale")) + ",";
    r += "\"EMESSO FATTURA\",\"001\",";
    r += Tra(Sostituisci(Sostituisci(iva, '\'', "''"), ',', ".")) + ",";
    r += Sostituisci(store::Format(aliquota, "00"), ',', ".") + ",";
    r += "\"1\",\"F\",";
    r += Importo(documento.get("Imponibile")) + ",";
    r += Importo(documento.get("TotIva"));
    return store::Utf8ToCp1252(r);
}

std::string RigaCliente(store::Recordset& cliente) {
    std::string r = Tra(store::Format(cliente.get("ID"), "0000"));
    static const std::pair<const char*, std::size_t> campi[] = {
        {"DescCliente", 30}, {"DescCliente2", 16}, {"Indirizzo", 30}, {"Citta", 30},
        {"Cap", 5},          {"Provincia", 2},     {"PartitaIva", 11}, {"CodiceFiscale", 16},
    };
    for (const auto& [nome, larghezza] : campi) r += "," + Campo(cliente.get(nome), larghezza);
    return r;
}

EsitoFatture EsportaFatture(store::Database& db, double dal, double al, const std::string& fileFatture,
                            const std::string& fileClienti, const AvanzamentoFatture& avanza) {
    if (fileFatture == fileClienti)
        throw core::ErroreEsportazione("I file delle fatture e dei clienti devono avere nomi diversi!");
    core::FileEsportazione fatture(fileFatture);
    core::FileEsportazione clienti(fileClienti);
    EsitoFatture esito;

    // The VAT of a document is that of its first line: one pass over the lines, in their order,
    // keeps the first of each document.
    std::unordered_map<long, std::pair<store::Value, store::Value>> primaIva;
    {
        auto righe = db.OpenRecordset(
            "Select Movimenti.Documento,AliquotaIva,DescIva From Movimenti Left Join CodiciIva on "
            "Movimenti.Iva=CodiciIva.ID Order By Movimenti.Documento,Movimenti.ID");
        for (; !righe->Eof(); righe->MoveNext()) {
            const long doc = static_cast<long>(core::NumeroOZero(righe->Fields(0).value()));
            primaIva.try_emplace(doc, righe->Fields(1).value(), righe->Fields(2).value());
        }
    }

    auto documenti = db.OpenRecordset("Select * from Documenti where DateValue(Data)>=DateValue('" + core::DataSql(dal) +
                                      "') And DateValue(Data)<=DateValue('" + core::DataSql(al) + "') Order By Data");
    const store::Value nulla;
    esito.documenti = ScriviRighe(*documenti, fatture, [&](store::Recordset& rs) {
        auto iva = primaIva.find(static_cast<long>(core::NumeroOZero(rs.get("ID"))));
        return iva == primaIva.end() ? RigaFattura(rs, nulla, nulla) : RigaFattura(rs, iva->second.first, iva->second.second);
    }, [&](long fatti, long totale) { if (avanza) avanza(false, fatti, totale); });
    auto anagrafiche = db.OpenRecordset("Select * from Clienti Order By DescCliente");
    esito.clienti = ScriviRighe(*anagrafiche, clienti, RigaCliente,
                                [&](long fatti, long totale) { if (avanza) avanza(true, fatti, totale); });

    fatture.Concludi();
    clienti.Concludi();
    return esito;
}

}  // namespace output
