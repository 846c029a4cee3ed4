#include "ui/report/Impaginazione.h"

#include <filesystem>
#include <set>

#include "store/convert.h"
#include "store/errors.h"
#include "store/format.h"

namespace ui::report {
namespace {

namespace fs = std::filesystem;

// Page number and page count are known only at the end: their places are kept as these marks.
constexpr char kPagina = '\x01';
constexpr char kPagine = '\x02';

std::string minuscolo(const std::string& s) { return store::AsciiLower(s); }

// "Importo|#,0.00" -> ("Importo", "#,0.00").
std::pair<std::string, std::string> campoEMaschera(const std::string& riferimento) {
    const auto bar = riferimento.find('|');
    if (bar == std::string::npos) return {riferimento, {}};
    return {riferimento.substr(0, bar), riferimento.substr(bar + 1)};
}

// Every field a layout names, with the element that names it, for checking against the statements.
template <class F>
void perOgniCampo(const Modello& m, F&& f) {
    auto banda = [&](const Banda& b) {
        for (const auto& e : b.elementi) {
            if (!e.campo.empty()) f(e.campo);
            if (!e.somma.empty()) f(e.somma);
            for (const auto& p : Pezzi(e.testo))
                if (p.tipo == '[') f(campoEMaschera(p.testo).first);
        }
    };
    for (const auto& b : m.bande) banda(b);
    for (const auto& g : m.gruppi) {
        f(g.campo);
        if (g.intestazione) banda(*g.intestazione);
        if (g.piede) banda(*g.piede);
    }
}

class Impaginatore {
public:
    Impaginatore(const Modello& m, const Dati& d, const Misuratore& mis, std::string immagini)
        : m_(m), dati_(d), mis_(mis), immagini_(std::move(immagini)) {
        if (!m.sorgente.empty()) {
            auto it = d.find(minuscolo(m.sorgente));
            if (it != d.end()) elenco_ = &it->second;
        }
        for (const auto& g : m.gruppi) indiciGruppo_.push_back(elenco_ ? elenco_->indice(g.campo) : -1);
        perOgniCampoSommato();
        totGruppo_.resize(m.gruppi.size());
        doc_.pagina = m.pagina;
        doc_.titolo = m.titolo;
    }

    Documento impagina() {
        const Pagina& p = m_.pagina;
        limite_ = p.altezzaUtile() - altezza(TipoBanda::PiedePagina);
        apriPagina(false);
        const std::size_t n = elenco_ ? elenco_->righe.size() : 0;
        const std::size_t gruppi = m_.gruppi.size();
        const Banda* dettaglio = m_.banda(TipoBanda::Dettaglio);
        std::vector<std::string> chiavi(gruppi);
        for (std::size_t i = 0; i < n; ++i) {
            const auto& r = elenco_->righe[i];
            const bool ultima = i + 1 == n;
            // The outermost group whose value changes with this row: its footers close, its headers open.
            std::size_t cambio = i == 0 ? 0 : gruppi;
            for (std::size_t k = 0; k < gruppi; ++k) {
                std::string chiave = indiciGruppo_[k] >= 0 ? store::ConcatText(r[indiciGruppo_[k]]) : std::string();
                if (i > 0 && cambio == gruppi && store::CompareText(chiave, chiavi[k]) != 0) cambio = k;
                chiavi[k] = std::move(chiave);
            }
            if (i > 0)
                for (std::size_t k = gruppi; k-- > cambio;)
                    if (m_.gruppi[k].piede) collocaConSpazio(*m_.gruppi[k].piede, static_cast<int>(k), true);
            riga_ = &r;
            for (std::size_t k = cambio; k < gruppi; ++k) totGruppo_[k].clear();
            // A group heading goes to the next page unless its first row fits under it.
            auto teste = [&] {
                std::vector<Resa> t;
                for (std::size_t k = cambio; k < gruppi; ++k)
                    if (m_.gruppi[k].intestazione) t.push_back(rendi(*m_.gruppi[k].intestazione, static_cast<int>(k)));
                return t;
            };
            std::vector<Resa> intestazioni = teste();
            double serve = dettaglio ? rendi(*dettaglio, innermost()).altezza : 0;
            for (const auto& t : intestazioni) serve += t.altezza;
            // The last row keeps the report's foot company, so that a page never holds the totals alone.
            const double riserva = altezza(ultima ? TipoBanda::PiedeReport : TipoBanda::ARiportare);
            if (y_ + serve > limite_ - riserva + 1e-9 && y_ > inizioCorpo_ + 1e-9) {
                chiudiPagina(true);
                apriPagina(true);
                intestazioni = teste();
            }
            for (auto& t : intestazioni) colloca(t);
            somma(r);
            if (dettaglio) colloca(rendi(*dettaglio, innermost()));
        }
        if (n > 0)
            for (std::size_t k = gruppi; k-- > 0;)
                if (m_.gruppi[k].piede) collocaConSpazio(*m_.gruppi[k].piede, static_cast<int>(k), false);
        if (const Banda* b = m_.banda(TipoBanda::PiedeReport)) collocaConSpazio(*b, innermost(), false);
        chiudiPagina(false);
        numera();
        return std::move(doc_);
    }

private:
    struct Resa {
        double altezza = 0;
        std::vector<Primitiva> primitive;   // y from the band's top
    };

    double altezza(TipoBanda t) const {
        const Banda* b = m_.banda(t);
        return b ? b->altezza : 0;
    }
    int innermost() const { return static_cast<int>(m_.gruppi.size()) - 1; }

    void perOgniCampoSommato() {
        auto banda = [&](const Banda& b) {
            for (const auto& e : b.elementi)
                if (!e.somma.empty() && elenco_) {
                    const int i = elenco_->indice(e.somma);
                    if (i >= 0) sommati_.insert(i);
                }
        };
        for (const auto& b : m_.bande) banda(b);
        for (const auto& g : m_.gruppi) {
            if (g.intestazione) banda(*g.intestazione);
            if (g.piede) banda(*g.piede);
        }
    }

    void somma(const std::vector<store::Value>& r) {
        for (int i : sommati_) {
            const store::Value& v = r[i];
            if (v.isNull()) continue;
            const double d = store::IsNumeric(v) || v.kind() == store::Value::Kind::Date ? store::CDbl(v) : 0;
            totReport_[i] += d;
            totPagina_[i] += d;
            for (auto& g : totGruppo_) g[i] += d;
        }
    }

    store::Value campo(const std::string& nome) const {
        const auto punto = nome.find('.');
        if (punto != std::string::npos && rigaRipetuta_ && minuscolo(nome.substr(0, punto)) == minuscolo(ripetuto_->nome)) {
            const int i = ripetuto_->tabella->indice(nome.substr(punto + 1));
            return i >= 0 ? (*rigaRipetuta_)[i] : store::Value();
        }
        if (punto != std::string::npos) {
            auto it = dati_.find(minuscolo(nome.substr(0, punto)));
            if (it != dati_.end()) {
                const int i = it->second.indice(nome.substr(punto + 1));
                if (i >= 0) return it->second.righe.empty() ? store::Value() : it->second.righe.front()[i];
            }
        }
        if (!elenco_ || !riga_) return {};
        const int i = elenco_->indice(nome);
        return i >= 0 ? (*riga_)[i] : store::Value();
    }

    std::string totale(const Elemento& e, int livello) const {
        const int i = elenco_ ? elenco_->indice(e.somma) : -1;
        const std::map<int, double>* tot = &totReport_;
        if (e.ambito == Ambito::Pagina) tot = &totPagina_;
        else if (e.ambito == Ambito::Gruppo && livello >= 0) tot = &totGruppo_[livello];
        auto it = tot->find(i);
        return store::Format(store::Value::Double(it == tot->end() ? 0.0 : it->second), e.maschera);
    }

    std::string testo(const std::string& modello) const {
        std::string out;
        for (const auto& p : Pezzi(modello)) {
            if (p.tipo == 0) {
                out += p.testo;
            } else if (p.tipo == '[') {
                auto [nome, maschera] = campoEMaschera(p.testo);
                out += store::Format(campo(nome), maschera);
            } else {
                const std::string n = minuscolo(p.testo);
                if (n == "pagina") out += kPagina;
                else if (n == "pagine") out += kPagine;
                else
                    for (const auto& par : m_.parametri)
                        if (minuscolo(par.nome) == n) {
                            out += par.valore;
                            break;
                        }
            }
        }
        return out;
    }

    Resa rendi(const Banda& b, int livello) const {
        Resa r;
        r.altezza = b.altezza;
        for (const auto& e : b.elementi) {
            if (e.ripeti.empty()) {
                rendiElemento(e, livello, 0, r);
                continue;
            }
            auto it = dati_.find(minuscolo(e.ripeti));
            if (it == dati_.end()) continue;
            Ripetuto rip{e.ripeti, &it->second};
            ripetuto_ = &rip;
            for (std::size_t k = 0; k < it->second.righe.size(); ++k) {
                rigaRipetuta_ = &it->second.righe[k];
                rendiElemento(e, livello, static_cast<double>(k) * e.altezza, r);
            }
            rigaRipetuta_ = nullptr;
            ripetuto_ = nullptr;
        }
        return r;
    }

    void rendiElemento(const Elemento& e, int livello, double scarto, Resa& r) const {
        Primitiva p = PrimitivaDi(e, e.x, e.y + scarto);
        p.aCapo = e.cresce;
        if (e.tipo == TipoElemento::Testo) p.testo = testo(e.testo);
        else if (e.tipo == TipoElemento::Campo)
            p.testo = e.somma.empty() ? store::Format(campo(e.campo), e.maschera) : totale(e, livello);
        else if (e.tipo == TipoElemento::Immagine) p.testo = (fs::path(immagini_) / e.file).string();
        if (e.cresce && !p.testo.empty()) {
            // A text that fits its frame is drawn as the others are, centred on its line.
            const double serve = mis_.altezza(e.carattere, e.larghezza, p.testo);
            p.aCapo = serve > e.altezza + 1e-9;
            p.altezza = std::max(e.altezza, serve);
            r.altezza = std::max(r.altezza, p.y + p.altezza);
        }
        if (scarto > 0) r.altezza = std::max(r.altezza, p.y + p.altezza);
        r.primitive.push_back(std::move(p));
    }

    struct Ripetuto {
        std::string nome;
        const Tabella* tabella;
    };
    mutable const Ripetuto* ripetuto_ = nullptr;
    mutable const std::vector<store::Value>* rigaRipetuta_ = nullptr;

    void colloca(const Resa& r) { collocaA(r, y_); y_ += r.altezza; }

    void collocaA(const Resa& r, double y) {
        auto& pagina = doc_.pagine.back().primitive;
        for (Primitiva p : r.primitive) {
            p.x += m_.pagina.sinistro;
            p.y += m_.pagina.alto + y;
            pagina.push_back(std::move(p));
        }
    }

    // Places a band after the list or between its groups, on a new page when it does not fit.
    void collocaConSpazio(const Banda& b, int livello, bool continua) {
        Resa r = rendi(b, livello);
        const double riserva = continua ? altezza(TipoBanda::ARiportare) : 0;
        if (y_ + r.altezza > limite_ - riserva + 1e-9 && y_ > inizioCorpo_ + 1e-9) {
            chiudiPagina(continua);
            apriPagina(continua);
            r = rendi(b, livello);
        }
        colloca(r);
    }

    void apriPagina(bool continua) {
        doc_.pagine.emplace_back();
        y_ = 0;
        totPagina_.clear();
        if (doc_.pagine.size() == 1)
            if (const Banda* b = m_.banda(TipoBanda::IntestazioneReport)) colloca(rendi(*b, innermost()));
        if (const Banda* b = m_.banda(TipoBanda::IntestazionePagina)) colloca(rendi(*b, innermost()));
        if (continua)
            if (const Banda* b = m_.banda(TipoBanda::Riporto)) colloca(rendi(*b, innermost()));
        inizioCorpo_ = y_;
    }

    void chiudiPagina(bool continua) {
        if (continua)
            if (const Banda* b = m_.banda(TipoBanda::ARiportare)) colloca(rendi(*b, innermost()));
        if (const Banda* b = m_.banda(TipoBanda::PiedePagina)) collocaA(rendi(*b, innermost()), limite_);
    }

    void numera() {
        const std::string pagine = std::to_string(doc_.pagine.size());
        for (std::size_t i = 0; i < doc_.pagine.size(); ++i) {
            const std::string numero = std::to_string(i + 1);
            for (auto& p : doc_.pagine[i].primitive) {
                if (p.testo.find_first_of("\x01\x02") == std::string::npos) continue;
                std::string t;
                for (char c : p.testo) t += c == kPagina ? numero : c == kPagine ? pagine : std::string(1, c);
                p.testo = std::move(t);
            }
        }
    }

    const Modello& m_;
    const Dati& dati_;
    const Misuratore& mis_;
    std::string immagini_;
    const Tabella* elenco_ = nullptr;
    const std::vector<store::Value>* riga_ = nullptr;
    std::vector<int> indiciGruppo_;
    std::set<int> sommati_;
    std::map<int, double> totReport_, totPagina_;
    std::vector<std::map<int, double>> totGruppo_;
    Documento doc_;
    double y_ = 0, limite_ = 0, inizioCorpo_ = 0;
};

}  // namespace

Primitiva PrimitivaDi(const Elemento& e, double x, double y) {
    Primitiva p;
    p.tipo = e.tipo == TipoElemento::Campo ? TipoElemento::Testo : e.tipo;
    p.x = x;
    p.y = y;
    p.larghezza = e.larghezza;
    p.altezza = e.altezza;
    p.carattere = e.carattere;
    p.allinea = e.allinea;
    p.spessore = e.spessore;
    return p;
}

int Tabella::indice(const std::string& campo) const {
    const std::string l = minuscolo(campo);
    for (std::size_t i = 0; i < campi.size(); ++i)
        if (minuscolo(campi[i]) == l) return static_cast<int>(i);
    return -1;
}

std::string TestoQuery(const Modello& modello, const SubReportDichiarato& sub) {
    std::string out;
    for (const auto& p : Pezzi(sub.query)) {
        // Only {Nome} of a declared parameter is replaced: brackets belong to the statement's own syntax.
        const ParametroDichiarato* trovato = nullptr;
        if (p.tipo == '{') {
            for (const auto* elenco : {&sub.parametri, &modello.parametri}) {
                for (const auto& par : *elenco)
                    if (minuscolo(par.nome) == minuscolo(p.testo)) {
                        trovato = &par;
                        break;
                    }
                if (trovato) break;
            }
        }
        if (trovato) out += trovato->valore;
        else if (p.tipo == 0) out += p.testo;
        else out += p.tipo + p.testo + (p.tipo == '[' ? ']' : '}');
    }
    return out;
}

// An ID goes in as a plain number.
std::string TestoNoto(const std::string& sql, const Dati& dati, long azienda) {
    std::string out;
    for (const auto& p : Pezzi(sql)) {
        if (p.tipo == 0) {
            out += p.testo;
            continue;
        }
        if (p.tipo == '{') {
            if (minuscolo(p.testo) == "azienda") {
                out += std::to_string(azienda);
                continue;
            }
            const auto punto = p.testo.find('.');
            auto it = punto == std::string::npos ? dati.end() : dati.find(minuscolo(p.testo.substr(0, punto)));
            if (it != dati.end()) {
                const int i = it->second.indice(p.testo.substr(punto + 1));
                if (i >= 0) {
                    const store::Value v = it->second.righe.empty() ? store::Value() : it->second.righe.front()[i];
                    if (v.isNull()) out += "Null";
                    else if (v.kind() == store::Value::Kind::Long || v.kind() == store::Value::Kind::Integer)
                        out += std::to_string(static_cast<long long>(v.number()));
                    else out += store::ConcatText(v);
                    continue;
                }
            }
        }
        out += p.tipo + p.testo + (p.tipo == '[' ? ']' : '}');
    }
    return out;
}

store::Database* DatabaseDi(const SubReportDichiarato& sub, store::Database* archivio, store::Database* temp,
                            store::Database* aziende) {
    switch (sub.database) {
    case Archivio::Temp: return temp;
    case Archivio::Aziende: return aziende;
    case Archivio::Archivio: break;
    }
    return archivio;
}

Dati CaricaDati(const Modello& modello, store::Database* archivio, store::Database* temp, const std::string& nomeFile,
                long azienda, store::Database* aziende) {
    Dati dati;
    for (const auto& sub : modello.subReports) {
        Tabella t;
        const std::string sql = TestoNoto(TestoQuery(modello, sub), dati, azienda);
        if (sql.find_first_not_of(" \t\r\n") != std::string::npos) {
            store::Database* db = DatabaseDi(sub, archivio, temp, aziende);
            if (!db)
                throw ErroreReport(store::err::OggettoNonImpostato,
                                   nomeFile + ": il sub-report " + sub.nome + " non ha il suo database aperto");
            try {
                auto rs = db->OpenRecordset(sql);
                const int n = rs->FieldCount();
                for (int i = 0; i < n; ++i) t.campi.push_back(rs->Fields(i).Name());
                for (; !rs->Eof(); rs->MoveNext()) {
                    auto& riga = t.righe.emplace_back();
                    riga.reserve(n);
                    for (int i = 0; i < n; ++i) riga.push_back(rs->Fields(i).value());
                }
            } catch (const store::JetError& e) {
                throw ErroreReport(e.number(), nomeFile + ": la query del sub-report " + sub.nome + " non si esegue: " + e.what());
            }
        }
        dati[minuscolo(sub.nome)] = std::move(t);
    }
    perOgniCampo(modello, [&](const std::string& nome) {
        std::string sub = modello.sorgente, campo = nome;
        const auto punto = nome.find('.');
        if (punto != std::string::npos && modello.subReport(nome.substr(0, punto))) {
            sub = nome.substr(0, punto);
            campo = nome.substr(punto + 1);
        }
        if (sub.empty())
            throw ErroreReport(ErrNomeMancante, nomeFile + ": il campo " + nome + " non ha un sub-report da cui leggere");
        const Tabella& t = dati[minuscolo(sub)];
        if (t.indice(campo) < 0)
            throw ErroreReport(ErrNomeMancante,
                               nomeFile + ": il campo " + campo + " non è tra quelli della query del sub-report " + sub);
    });
    return dati;
}

Documento Impagina(const Modello& modello, const Dati& dati, const Misuratore& misuratore,
                   const std::string& cartellaImmagini, const std::string& nomeFile) {
    auto immagine = [&](const Banda& b) {
        for (const auto& e : b.elementi) {
            std::error_code ec;
            if (e.tipo == TipoElemento::Immagine && !fs::is_regular_file(fs::path(cartellaImmagini) / e.file, ec))
                throw ErroreReport(ErrFileMancante,
                                   nomeFile + ": manca l'immagine " + e.file + " nella cartella " + cartellaImmagini);
        }
    };
    for (const auto& b : modello.bande) immagine(b);
    for (const auto& g : modello.gruppi) {
        if (g.intestazione) immagine(*g.intestazione);
        if (g.piede) immagine(*g.piede);
    }
    return Impaginatore(modello, dati, misuratore, cartellaImmagini).impagina();
}

}  // namespace ui::report
