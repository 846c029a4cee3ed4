#include "books/estratto.h"

#include <cmath>

#include "core/archivio_sql.h"
#include "core/documenti.h"
#include "core/session.h"
#include "store/convert.h"
#include "store/format.h"

namespace books {

namespace {

std::string Id(long id) { return std::to_string(id); }

store::Database& Scratch(const store::DatabasePtr& temp) {
    const store::DatabasePtr& db = temp ? temp : core::session().dbTemp;
    if (!db) return core::Archivio();  // raises: nothing open
    return *db;
}

// The period as two pieces of a where clause, one on the documents' date, one on the money's.
struct Filtri {
    std::string doc;
    std::string pag;
};

Filtri FiltriPeriodo(double dal, double al) {
    Filtri f;
    if (dal != 0) {
        const std::string d = core::DataSql(dal);
        f.doc += " and DateValue(Data)>=DateValue('" + d + "')";
        f.pag += " and DateValue(DataPagamento)>=DateValue('" + d + "')";
    }
    if (al != 0) {
        const std::string a = core::DataSql(al);
        f.doc += " and DateValue(Data)<=DateValue('" + a + "')";
        f.pag += " and DateValue(DataPagamento)<=DateValue('" + a + "')";
    }
    return f;
}

double Arrotonda2(double v) { return std::nearbyint(v * 100.0) / 100.0; }

// Paid in full inside the period, at two decimals; a document with no payment stays.
bool PagatoPerIntero(const std::string& condizione, const std::string& filtroPag, double totale) {
    auto rs = core::Apri("Select Sum(ImportoPagamento) as TotPagamento from Pagamenti where " + condizione + filtroPag);
    const auto pagato = core::NumeroOpzionale(rs->get("TotPagamento"));
    return pagato && Arrotonda2(*pagato) == Arrotonda2(totale);
}

// Adds rows of one kind with ids from Max(ID)+1 on, counted here: the scratch file is this
// process's own, so nobody else takes an id in between.
class Righe {
public:
    Righe(store::Database& db, long tipo)
        : rs_(db.OpenRecordset("Select * from Estratto where Tipo=" + Id(tipo))), tipo_(tipo) {
        rs_->SetAppendOnly(true);
        auto m = db.OpenRecordset("Select Max(ID) as M from Estratto");
        prossimo_ = static_cast<long>(core::NumeroOZero(m->get("M"))) + 1;
        if (prossimo_ < 1) prossimo_ = 1;
    }

    // One row on one side: Dare grows the balance, Avere lowers it; the other side stays Null.
    void Aggiungi(const store::Value& data, const store::Value& descrizione, bool inDare, double importo,
                  double& saldo, const store::Value& fornitore = store::Value::Null(),
                  const store::Value& descFornitore = store::Value::Null()) {
        saldo += inDare ? importo : -importo;
        rs_->AddNew();
        rs_->set("ID", store::Value::Long(prossimo_++));
        rs_->set("Tipo", store::Value::Long(tipo_));
        rs_->set("Data", data);
        rs_->set("Descrizione", descrizione);
        rs_->set(inDare ? "Dare" : "Avere", store::Value::Double(importo));
        rs_->set("Saldo", store::Value::Double(saldo));
        if (!fornitore.isNull()) rs_->set("Fornitore", fornitore);
        if (!descFornitore.isNull()) rs_->set("DescFornitore", descFornitore);
        rs_->Update();
    }

private:
    std::unique_ptr<store::Recordset> rs_;
    long tipo_;
    long prossimo_ = 1;
};

void RigheCliente(store::Database& db, long cliente, bool soloAperte, const Filtri& f) {
    Righe righe(db, EstrattoCliente);
    double saldo = 0;
    auto doc = core::Apri("Select * from qrDocumentiDesc where EscludiEstrattoConto=0 And (Tipo=5 Or Tipo=6) and Cliente=" +
                          Id(cliente) + f.doc + " Order By Data");
    for (; !doc->Eof(); doc->MoveNext()) {
        const long id = static_cast<long>(core::NumeroOZero(doc->get("ID")));
        const double totale = core::NumeroOZero(doc->get("ImportoTotale"));
        if (soloAperte && PagatoPerIntero("Documento=" + Id(id), f.pag, totale)) continue;
        const bool attivo = core::TipoAttivo(static_cast<long>(core::NumeroOZero(doc->get("Tipo"))));
        righe.Aggiungi(doc->get("Data"), doc->get("DescDocumento"), attivo, totale, saldo);
        auto pag = core::Apri(std::string("Select * from ") + (attivo ? "qrIncassi" : "qrPagamenti") +
                              " where Documento=" + Id(id) + f.pag + " Order by DataPagamento");
        for (; !pag->Eof(); pag->MoveNext()) {
            const double importo = core::NumeroOZero(pag->get("ImportoPagamento"));
            righe.Aggiungi(pag->get("DataPagamento"), pag->get("DescPagamento"), !attivo, importo, saldo);
        }
    }
}

std::string SorgenteFornitori(long fornitore, bool gruppi, const Filtri& f) {
    std::string s =
        "Select ID,Data,'Spesa N.' & Spese.Numero & ' del ' & Spese.Data as DescDocumento, ImportoSpesa as "
        "ImportoTotale, '0' as Tipo, 'S' as TipoDoc, Fornitore, DescFornitore From qrSpese where "
        "EscludiEstrattoConto=0 And ";
    s += fornitore == 0 ? "1" : "Fornitore=" + Id(fornitore);
    s += f.doc;
    s += " UNION Select ID,Data,'Note di Credito N.' & Documenti.Numero & ' del ' & Documenti.Data as DescDocumento, "
         "ImportoTotale, '9' as Tipo, 'N' as TipoDoc, Fornitore, DescFornitore From qrDocumenti where "
         "EscludiEstrattoConto=0 And Tipo=9";
    if (fornitore != 0) s += " and Fornitore=" + Id(fornitore);
    s += f.doc;
    s += gruppi ? " Order By DescFornitore,Fornitore,Data" : " Order By Data";
    return s;
}

void RigheFornitori(store::Database& db, long fornitore, bool soloAperte, const Filtri& f, bool gruppi,
                       const AvanzamentoEstratto& avanza) {
    Righe righe(db, EstrattoFornitore);
    auto src = core::Apri(SorgenteFornitori(fornitore, gruppi, f));
    long totale = 0;
    if (!src->Eof()) {
        src->MoveLast();
        totale = src->RecordCount();
        src->MoveFirst();
        if (avanza) avanza(0, totale);
    }
    double saldo = 0;
    store::Value ultimo;
    for (long n = 1; !src->Eof(); src->MoveNext(), ++n) {
        if (avanza) avanza(n, totale);
        const long id = static_cast<long>(core::NumeroOZero(src->get("ID")));
        const bool spesa = store::ConcatText(src->get("Tipo")) == "0";
        const double importo = core::NumeroOZero(src->get("ImportoTotale"));
        if (soloAperte && PagatoPerIntero((spesa ? "Spesa=" : "Documento=") + Id(id), f.pag, importo)) continue;
        const store::Value forn = src->get("Fornitore");
        const store::Value desc = src->get("DescFornitore");
        if (core::NumeroOZero(forn) != core::NumeroOZero(ultimo)) saldo = 0;
        ultimo = forn;
        // A supplier's credit note goes under Dare just as an expense does.
        righe.Aggiungi(src->get("Data"), src->get("DescDocumento"), true, importo, saldo, forn, desc);
        auto pag = core::Apri(spesa ? "Select * from qrPagamenti where Spesa=" + Id(id) + f.pag + " Order by DataPagamento"
                                    : "Select * from qrIncassi where Documento=" + Id(id) + f.pag + " Order by DataPagamento");
        for (; !pag->Eof(); pag->MoveNext())
            righe.Aggiungi(pag->get("DataPagamento"), pag->get("DescPagamento"), false,
                           core::NumeroOZero(pag->get("ImportoPagamento")), saldo, forn, desc);
    }
}

// A date is given when it is neither of the two empty-date sentinels.
bool DataData(double data) { return data != 0; }

std::string DataCancelletti(double data) { return "#" + store::Format(store::Value::Date(data), "mm/dd/yyyy") + "#"; }

}  // namespace

std::string SqlEstratto(long tipo) { return "Select * from Estratto where Tipo=" + Id(tipo); }

void GeneraEstratto(long intestatario, long tipo, bool soloAperte, double dal, double al, bool gruppi,
                    const AvanzamentoEstratto& avanza, const store::DatabasePtr& temp) {
    store::Database& db = Scratch(temp);
    db.Execute("Delete from Estratto where Tipo=" + Id(tipo));
    if (tipo != EstrattoCliente && tipo != EstrattoFornitore) return;
    const Filtri f = FiltriPeriodo(dal, al);
    db.BeginBatch(100000);
    try {
        if (tipo == EstrattoCliente) {
            RigheCliente(db, intestatario, soloAperte, f);
        } else {
            RigheFornitori(db, intestatario, soloAperte, f, gruppi, avanza);
            db.EndBatch();
            db.BeginBatch(100000);
            if (gruppi) RicalcolaSaldi(false, "DescFornitore, Fornitore, Data", temp);
            auto fornitori =
                db.OpenRecordset("Select Distinct Fornitore, DescFornitore from Estratto where Tipo=" + Id(tipo));
            for (; !fornitori->Eof(); fornitori->MoveNext()) {
                const long forn = static_cast<long>(core::NumeroOZero(fornitori->get("Fornitore")));
                if (forn != 0)
                    SaldoPrecedenteEstratto(forn, store::ConcatText(fornitori->get("DescFornitore")), tipo, dal, al, temp);
            }
        }
    } catch (...) {
        db.EndBatch();  // what was built so far stays, as the caller's handler finds it
        throw;
    }
    db.EndBatch();
}

void RicalcolaSaldi(bool perData, const std::string& ordine, const store::DatabasePtr& temp) {
    store::Database& db = Scratch(temp);
    const std::string per = perData ? "Data" : (ordine.empty() ? "ID" : ordine);
    auto rs = db.OpenRecordset("Select * from Estratto order by " + per);
    double saldo = 0;
    double ultimo = 0;
    bool primo = true;
    for (; !rs->Eof(); rs->MoveNext()) {
        const double forn = core::NumeroOZero(rs->get("Fornitore"));
        if (primo || forn != ultimo) saldo = 0;
        primo = false;
        ultimo = forn;
        saldo += core::NumeroOZero(rs->get("Dare")) - core::NumeroOZero(rs->get("Avere"));
        rs->Edit();
        rs->set("Saldo", store::Value::Double(saldo));
        rs->Update();
    }
}

void SaldoPrecedenteEstratto(long fornitore, const std::string& descrizione, long tipo, double dal, double al,
                             const store::DatabasePtr& temp) {
    store::Database& db = Scratch(temp);
    const std::string chi = " where Fornitore=" + Id(fornitore) + " And Tipo=" + Id(tipo);
    double totDare = 0, totAvere = 0;
    if (DataData(dal)) {
        auto rs = db.OpenRecordset("Select Sum(Dare) as TotDare, Sum(Avere) as TotAvere from Estratto" + chi +
                                   " And Data < " + DataCancelletti(dal));
        totDare = core::NumeroOZero(rs->get("TotDare"));
        totAvere = core::NumeroOZero(rs->get("TotAvere"));
        db.Execute("Delete from Estratto" + chi + " And Data < " + DataCancelletti(dal));
    }
    if (DataData(al)) db.Execute("Delete from Estratto" + chi + " And Data > " + DataCancelletti(al));
    const double saldoPrima = totDare - totAvere;
    if (descrizione.empty() || saldoPrima == 0) return;
    auto min = db.OpenRecordset("Select Min(ID) as Tot from Estratto where ID<0");
    const long id = static_cast<long>(core::NumeroOZero(min->get("Tot"))) - 1;
    auto rs = db.OpenRecordset("Select * from Estratto where ID=" + Id(id));
    rs->AddNew();
    rs->set("ID", store::Value::Long(id));
    rs->set("Data", store::Value::Date(dal - 1));
    rs->set("Descrizione", store::Value::Text("Saldo Precedente"));
    rs->set("Dare", store::Value::Double(totDare));
    rs->set("Avere", store::Value::Double(totAvere));
    rs->set("Saldo", store::Value::Double(saldoPrima));
    rs->set("Tipo", store::Value::Long(tipo));
    rs->set("Fornitore", store::Value::Long(fornitore));
    rs->set("DescFornitore", store::Value::Text(descrizione.substr(0, 200)));
    rs->Update();
}

}  // namespace books
