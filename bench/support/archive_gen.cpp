#include "support/archive_gen.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <filesystem>
#include <initializer_list>
#include <map>
#include <utility>
#include <vector>

#include <unistd.h>

#include "store/convert.h"
#include "store/model/model.h"

namespace fs = std::filesystem;
using store::Value;

namespace bench {

namespace {

// A well-mixed number from a few integers: the data differ row by row yet never between runs.
std::uint64_t mescola(std::uint64_t a, std::uint64_t b = 0) {
    std::uint64_t x = a * 0x9E3779B97F4A7C15ULL + b + 0x632BE59BD9B4E019ULL;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ULL;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBULL;
    return x ^ (x >> 31);
}

int scegli(std::uint64_t h, int n) { return static_cast<int>(h % static_cast<std::uint64_t>(n)); }

double soldi(double x) { return store::Round(x, 2); }

Value L(long v) { return Value::Long(static_cast<std::int32_t>(v)); }
Value D(double v) { return Value::Double(v); }
Value T(std::string s) { return Value::Text(std::move(s)); }
Value B(bool b) { return Value::Bool(b); }
Value Giorno(double serial) { return Value::Date(serial); }

std::string numero4(long n) {
    std::string s = std::to_string(n);
    return std::string(s.size() < 4 ? 4 - s.size() : 0, '0') + s;
}

// Adds rows to one table in blocks: one statement, and so one write of the file, per block.
// Every row of a table names the same fields in the same order.
class Righe {
public:
    Righe(store::Database& db, std::string tabella) : db_(db), tabella_(std::move(tabella)) {}

    void aggiungi(std::initializer_list<std::pair<const char*, Value>> campi) {
        if (colonne_.empty())
            for (const auto& campo : campi) colonne_.emplace_back(campo.first);
        std::vector<Value>& riga = righe_.emplace_back();
        for (const auto& campo : campi) riga.push_back(campo.second);
        if (righe_.size() == kBlocco) scrivi();
    }

    void scrivi() {
        store::model::InserisciRighe(db_, tabella_, colonne_, righe_);
        righe_.clear();
    }

private:
    static constexpr std::size_t kBlocco = 500;

    store::Database& db_;
    std::string tabella_;
    std::vector<std::string> colonne_;
    std::vector<std::vector<Value>> righe_;
};

constexpr double kAliquote[] = {22, 10, 4, 0};
constexpr int kCodiciIva = 4;
constexpr int kCondizioni = 5;
constexpr int kTipiSpesa = 5;
constexpr int kClassificazioni = 4;

struct Citta {
    const char* nome;
    const char* cap;
    const char* provincia;
};
constexpr Citta kCitta[] = {{"Milano", "20121", "MI"}, {"Roma", "00184", "RM"},  {"Torino", "10121", "TO"},
                            {"Napoli", "80133", "NA"}, {"Bologna", "40121", "BO"}, {"Firenze", "50122", "FI"}};

// What the money side needs to know of a due date.
struct Scadenza {
    long id, documento, spesa, cliente, fornitore;
    double importo, data;
    bool incasso;
};

struct Documento {
    long id, cliente, fornitore;
    int tipo;
    double totale, data;
};

class Generatore {
public:
    Generatore(store::Database& db, const Dimensioni& d) : db_(db), d_(d), inizio_(store::DateSerial(2024, 1, 1)) {}

    void genera() {
        codici();
        anagrafiche();
        servizi();
        documenti();
        spese();
        scadenze();
        pagamenti();
        for (auto& [nome, righe] : tabelle_) righe.scrivi();
    }

private:
    store::Database& db_;
    const Dimensioni& d_;
    const double inizio_;
    std::vector<Documento> documenti_;
    std::vector<Documento> spese_;  // an expense as a document of its supplier
    std::vector<Scadenza> scadenze_;
    std::map<std::string, Righe> tabelle_;

    Righe& tabella(const std::string& nome) { return tabelle_.try_emplace(nome, db_, nome).first->second; }

    double giornoDellAnno(long i, long n) const { return inizio_ + static_cast<double>((i * 365) / (n ? n : 1)); }

    void codici() {
        Righe& iva = tabella("CodiciIva");
        const char* desc[] = {"Iva 22%", "Iva 10%", "Iva 4%", "Esente art. 10"};
        for (int i = 0; i < kCodiciIva; ++i)
            iva.aggiungi({{"ID", L(i + 1)}, {"DescIva", T(desc[i])}, {"AliquotaIva", D(kAliquote[i])}});
        Righe& cond = tabella("CondizioniPagamento");
        const char* nomi[] = {"Rimessa diretta", "30 gg d.f.", "30-60 gg d.f.", "30-60-90 gg f.m.", "60 gg f.m."};
        const int rate[] = {0, 1, 2, 3, 1};
        for (int i = 0; i < kCondizioni; ++i)
            cond.aggiungi({{"ID", L(i + 1)}, {"DescPagamento", T(nomi[i])}, {"Rate", L(rate[i])}, {"Rata1", L(30)},
                           {"Rata2", L(60)}, {"Rata3", L(90)}, {"FineMese", B(i >= 3)}});
        Righe& tipi = tabella("TipiSpesa");
        const char* tipo[] = {"Cancelleria", "Carburante", "Consulenze", "Utenze", "Affitto"};
        for (int i = 0; i < kTipiSpesa; ++i) tipi.aggiungi({{"ID", L(i + 1)}, {"DescTipoSpesa", T(tipo[i])}});
        Righe& classi = tabella("ClassificazioniSpese");
        const char* classe[] = {"Generali", "Automezzi", "Professionali", "Sede"};
        for (int i = 0; i < kClassificazioni; ++i)
            classi.aggiungi({{"ID", L(i + 1)}, {"DescClassificazione", T(classe[i])}});
    }

    void anagrafiche() {
        Righe& clienti = tabella("Clienti");
        for (long i = 1; i <= d_.clienti; ++i) {
            const Citta& c = kCitta[scegli(mescola(i, 1), 6)];
            clienti.aggiungi({{"ID", L(i)}, {"DescCliente", T("Cliente " + numero4(i))},
                              {"DescCliente2", T(i % 3 ? "Srl" : "")}, {"Indirizzo", T("Via Roma " + std::to_string(i))},
                              {"Cap", T(c.cap)}, {"Citta", T(c.nome)}, {"Provincia", T(c.provincia)},
                              {"PartitaIva", T("0" + std::to_string(1000000000 + i))},
                              {"IvaApplicata", L(1)}, {"CondizioniPagamento", L(1 + scegli(mescola(i, 2), kCondizioni))},
                              {"Sconto1", D(i % 4 ? 0 : 5)}, {"Sconto2", D(0)}});
        }
        Righe& fornitori = tabella("Fornitori");
        for (long i = 1; i <= d_.fornitori; ++i) {
            const Citta& c = kCitta[scegli(mescola(i, 3), 6)];
            fornitori.aggiungi({{"ID", L(i)}, {"DescFornitore", T("Fornitore " + numero4(i))},
                                {"DescFornitore2", T("Spa")}, {"Indirizzo", T("Corso Italia " + std::to_string(i))},
                                {"Cap", T(c.cap)}, {"Citta", T(c.nome)}, {"Provincia", T(c.provincia)}});
        }
    }

    void servizi() {
        Righe& servizi = tabella("Servizi");
        for (long i = 1; i <= d_.servizi; ++i)
            servizi.aggiungi({{"ID", L(i)}, {"DescServizio", T("Servizio " + numero4(i))},
                              {"CodiceInterno", T("S" + numero4(i))}, {"CodiceIva", L(1 + scegli(i, kCodiciIva))},
                              {"CostoUnitario", D(soldi(5 + scegli(mescola(i, 4), 50000) / 100.0))},
                              {"NonStampare", B(false)}, {"Sconto1", D(0)}});
    }

    static int tipoDocumento(long i) {
        const int quota = scegli(mescola(i, 5), 10);
        return quota < 6 ? 5 : quota < 7 ? 6 : quota < 9 ? 7 : 9;
    }

    void documenti() {
        Righe& documenti = tabella("Documenti");
        Righe& righe = tabella("Movimenti");
        long numeri[10] = {};
        long idRiga = 0;
        for (long i = 1; i <= d_.documenti; ++i) {
            const int tipo = tipoDocumento(i);
            const bool fornitore = tipo == 9;
            const long controparte = 1 + scegli(mescola(i, 6), fornitore ? d_.fornitori : d_.clienti);
            double imponibile = 0, iva = 0;
            for (int r = 0; r < d_.righe; ++r) {
                const std::uint64_t h = mescola(i, 100 + r);
                const int codice = scegli(h, kCodiciIva);
                const double quantita = 1 + scegli(h >> 8, 5);
                const double prezzo = soldi(1 + scegli(h >> 16, 20000) / 100.0);
                const double importo = soldi(quantita * prezzo);
                imponibile += importo;
                iva += soldi(importo * kAliquote[codice] / 100);
                righe.aggiungi({{"ID", L(++idRiga)}, {"Documento", L(i)},
                                {"Servizio", L(r == 4 ? 0 : 1 + scegli(h >> 24, d_.servizi))},
                                {"DescMovimento", T("Riga " + std::to_string(r + 1) + " del documento " + std::to_string(i))},
                                {"Quantita", D(quantita)}, {"PrezzoUnitario", D(prezzo)}, {"Sconto1", D(0)},
                                {"Sconto2", D(0)}, {"Importo", D(importo)}, {"Iva", L(codice + 1)}});
            }
            imponibile = soldi(imponibile);
            const double ritenuta = tipo == 5 && i % 7 == 0 ? 20 : 0;
            const double totRitenuta = soldi(imponibile * ritenuta / 100);
            const double totale = soldi(imponibile + iva - totRitenuta);
            const double data = giornoDellAnno(i - 1, d_.documenti);
            documenti.aggiungi({{"ID", L(i)}, {"Tipo", L(tipo)}, {"Numero", L(++numeri[tipo])},
                                {"Prefisso", T("")}, {"Suffisso", T("")}, {"Data", Giorno(data)},
                                {"DataRegistrazione", Giorno(data)}, {"Cliente", L(fornitore ? 0 : controparte)},
                                {"Fornitore", L(fornitore ? controparte : 0)},
                                {"CondizioniPagamento", L(1 + scegli(i, kCondizioni))}, {"Sconto1", D(0)},
                                {"Sconto2", D(0)}, {"Sconto3", D(0)}, {"Sconto4", D(0)},
                                {"RitenutaAcconto", D(ritenuta)}, {"Maggiorazione", D(0)}, {"Colli", L(0)},
                                {"CertAcconto", B(false)}, {"EscludiEstrattoConto", B(false)}, {"Pagato", B(false)},
                                {"Imponibile", D(imponibile)}, {"TotIva", D(soldi(iva))}, {"TotNetto", D(imponibile)},
                                {"TotSpese", D(0)}, {"TotRitenutaAcconto", D(totRitenuta)},
                                {"ImportoTotale", D(totale)}});
            if (tipo != 7) documenti_.push_back({i, fornitore ? 0 : controparte, fornitore ? controparte : 0, tipo, totale, data});
        }
    }

    void spese() {
        Righe& spese = tabella("Spese");
        Righe& righe = tabella("MovimentiSpese");
        for (long i = 1; i <= d_.spese; ++i) {
            const std::uint64_t h = mescola(i, 7);
            const long fornitore = 1 + scegli(h, d_.fornitori);
            double imponibile = 0, iva = 0;
            for (int r = 0; r < 2; ++r) {
                const int codice = scegli(h >> (8 + r), kCodiciIva);
                const double importo = soldi(10 + scegli(mescola(i, 200 + r), 100000) / 100.0);
                imponibile += importo;
                iva += soldi(importo * kAliquote[codice] / 100);
                righe.aggiungi({{"ID", L(2 * (i - 1) + r + 1)}, {"Spesa", L(i)},
                                {"DescMovimento", T("Voce " + std::to_string(r + 1))}, {"Importo", D(importo)},
                                {"Iva", L(codice + 1)}});
            }
            const double totale = soldi(imponibile + iva);
            const double data = giornoDellAnno(i - 1, d_.spese);
            spese.aggiungi({{"ID", L(i)}, {"Numero", T(std::to_string(i))}, {"Data", Giorno(data)},
                            {"Fornitore", L(fornitore)}, {"TipoSpesa", L(1 + scegli(h >> 20, kTipiSpesa))},
                            {"Classificazione", L(1 + scegli(h >> 24, kClassificazioni))},
                            {"CondizioniPagamento", L(1)}, {"RitenutaAcconto", D(0)},
                            {"EscludiEstrattoConto", B(false)}, {"Pagata", B(false)},
                            {"Imponibile", D(soldi(imponibile))}, {"TotIva", D(soldi(iva))},
                            {"ImportoSpesa", D(totale)}});
            spese_.push_back({i, 0, fornitore, 0, totale, data});
        }
    }

    // The quota is spread evenly over the documents that are settled and then the expenses.
    void scadenze() {
        Righe& righe = tabella("Scadenze");
        const long titoli = static_cast<long>(documenti_.size() + spese_.size());
        if (titoli == 0) return;
        const long base = d_.scadenze / titoli, extra = d_.scadenze % titoli;
        long k = 0;
        for (const auto* elenco : {&documenti_, &spese_}) {
            const bool spesa = elenco == &spese_;
            for (const Documento& doc : *elenco) {
                const long rate = base + (k++ < extra ? 1 : 0);
                double assegnato = 0;
                for (long r = 1; r <= rate; ++r) {
                    const double importo = r == rate ? soldi(doc.totale - assegnato) : soldi(doc.totale / rate);
                    assegnato += importo;
                    Scadenza s{static_cast<long>(scadenze_.size() + 1), spesa ? 0 : doc.id, spesa ? doc.id : 0,
                               doc.cliente, doc.fornitore, importo, doc.data + 30.0 * r,
                               !spesa && (doc.tipo == 5 || doc.tipo == 9)};
                    righe.aggiungi({{"ID", L(s.id)}, {"Documento", L(s.documento)}, {"Spesa", L(s.spesa)},
                                    {"Cliente", L(s.cliente)}, {"Fornitore", L(s.fornitore)},
                                    {"DescScadenza", T("Rata " + std::to_string(r) + " di " + std::to_string(rate))},
                                    {"DataScadenza", Giorno(s.data)}, {"DataAvviso", Giorno(s.data - 5)},
                                    {"ImportoScadenza", D(importo)}, {"Rata", L(r)}, {"Rate", L(rate)},
                                    {"Pagata", B(false)}});
                    scadenze_.push_back(s);
                }
            }
        }
    }

    // Per ten instalments: two left open, two paid in two parts, one paid in part only, one paid one
    // euro too much, four paid in full. What the quota still asks for goes straight onto documents,
    // ten euro each.
    void pagamenti() {
        Righe& pagamenti = tabella("Pagamenti");
        Righe* primaNota = d_.primaNota ? &tabella("PrimaNota") : nullptr;
        long id = 0;
        auto paga = [&](const Scadenza& s, long scadenza, double importo, double data) {
            ++id;
            pagamenti.aggiungi({{"ID", L(id)}, {"Documento", L(s.documento)}, {"Spesa", L(s.spesa)},
                                {"Scadenza", L(scadenza)}, {"Cliente", L(s.cliente)}, {"Fornitore", L(s.fornitore)},
                                {"DescPagamento", T("Pagamento " + std::to_string(id))}, {"DataPagamento", Giorno(data)},
                                {"ImportoPagamento", D(importo)}, {"TipoPagamento", T("Bonifico")}});
            if (primaNota)
                primaNota->aggiungi({{"ID", L(id)}, {"Data", Giorno(data)},
                                     {"Descrizione", T("Pagamento " + std::to_string(id))}, {"Importo", D(importo)},
                                     {"Tipo", L(s.incasso ? 0 : 1)}, {"Destinazione", L(id % 3)},
                                     {"Pagamento", L(id)}, {"TipoPagamento", T("Bonifico")}, {"Numero", L(0)}});
        };
        for (const Scadenza& s : scadenze_) {
            const int schema = static_cast<int>(s.id % 10);
            if (id >= d_.pagamenti) break;
            if (schema < 2) continue;
            if (schema < 5) {
                const double acconto = soldi(s.importo * 0.4);
                paga(s, s.id, acconto, s.data - 10);
                if (schema < 4 && id < d_.pagamenti) paga(s, s.id, soldi(s.importo - acconto), s.data);
            } else {
                paga(s, s.id, schema == 5 ? soldi(s.importo + 1) : s.importo, s.data);
            }
        }
        for (std::size_t k = 0; id < d_.pagamenti && !documenti_.empty(); ++k) {
            const Documento& doc = documenti_[k % documenti_.size()];
            paga({0, doc.id, 0, doc.cliente, doc.fornitore, 10, doc.data, doc.tipo == 5 || doc.tipo == 9}, 0, 10,
                 doc.data + 1);
        }
    }
};

std::string dimensioni(const Dimensioni& d) {
    return std::to_string(d.clienti) + "-" + std::to_string(d.fornitori) + "-" + std::to_string(d.servizi) + "-" +
           std::to_string(d.documenti) + "-" + std::to_string(d.righe) + "-" + std::to_string(d.scadenze) + "-" +
           std::to_string(d.pagamenti) + "-" + std::to_string(d.spese) + (d.primaNota ? "-pn" : "");
}

// Raised whenever the generator makes different rows.
constexpr int kVersioneDati = 2;

// A change of the model's tables or queries, or of the rows made, gives a new name, so no run
// measures a stale archive.
std::string impronta() {
    std::string testo = std::to_string(kVersioneDati);
    for (const store::model::Tabella& t : store::model::TabelleArchivio()) {
        testo += t.nome;
        for (const store::model::Campo& c : t.campi) testo += c.nome + std::to_string(static_cast<int>(c.tipo));
    }
    for (const store::QueryDef& q : store::model::QueryArchivio()) testo += q.Name + q.SQL;
    char hex[20];
    std::snprintf(hex, sizeof hex, "%016llx", static_cast<unsigned long long>(mescola(std::hash<std::string>{}(testo))));
    return hex;
}

// Archives of the same sizes made from an older model.
void rimuoviSuperati(const fs::path& cartella, const std::string& prefisso, const fs::path& attuale) {
    std::error_code ec;
    for (const auto& voce : fs::directory_iterator(cartella, ec)) {
        const std::string nome = voce.path().filename().string();
        if (nome.rfind(prefisso, 0) == 0 && voce.path() != attuale) fs::remove(voce.path(), ec);
    }
}

}  // namespace

void GeneraArchivioProva(store::Database& db, const Dimensioni& d) { Generatore(db, d).genera(); }

std::string ArchivioProva(const Dimensioni& d) {
    const fs::path cartella = fs::temp_directory_path();
    const std::string prefisso = "brevano-prova-" + dimensioni(d) + "_";
    const fs::path path = cartella / (prefisso + impronta() + ".mdb");
    if (fs::exists(path)) return path.string();
    rimuoviSuperati(cartella, prefisso, path);
    // Two benchmarks started together each write their own copy; the last rename wins.
    const fs::path parziale = path.string() + "." + std::to_string(::getpid()) + ".parziale";
    store::model::GeneraArchivioVuoto(parziale.string());
    {
        store::DatabasePtr db = store::Workspace::Default().OpenDatabase(parziale.string());
        GeneraArchivioProva(*db, d);
        db->Close();
    }
    fs::rename(parziale, path);
    return path.string();
}

Dimensioni MilioneDiDocumenti() {
    return {.clienti = 5000, .fornitori = 500, .documenti = 1000000, .righe = 2, .scadenze = 300000, .pagamenti = 300000};
}

void AggiungiIndiciMancanti(store::Database& db) {
    for (const store::model::Tabella& t : store::model::TabelleArchivio()) {
        const auto def = db.GetTableDef(t.nome);
        if (!def) continue;
        for (const store::IndexDef& ix : t.definizione().Indexes) {
            const auto stesso = [&](const store::IndexDef& a) { return store::CompareText(a.Name, ix.Name) == 0; };
            if (std::none_of(def->Indexes.begin(), def->Indexes.end(), stesso)) db.AppendIndex(t.nome, ix);
        }
    }
}

}  // namespace bench
