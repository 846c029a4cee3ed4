#include "ui/report/EditorModello.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <set>

#include "store/convert.h"

namespace ui::report {
namespace {

constexpr std::size_t kPassiMassimi = 200;
constexpr double kMinimo = 1;   // the smallest side of an element that is no line

double arrotonda(double v) { return std::round(v * 100) / 100; }

std::string minuscolo(const std::string& s) { return store::AsciiLower(s); }

std::string numeroTesto(double v) {
    char buf[32];
    auto r = std::to_chars(buf, buf + sizeof buf, arrotonda(v));
    std::string t(buf, r.ptr);
    std::replace(t.begin(), t.end(), '.', ',');
    return t;
}

// A number as a user types it: comma or point, no thousands.
std::optional<double> leggiNumero(std::string t) {
    t.erase(0, t.find_first_not_of(' '));
    t.erase(t.find_last_not_of(' ') + 1);
    std::replace(t.begin(), t.end(), ',', '.');
    double v = 0;
    auto r = std::from_chars(t.data(), t.data() + t.size(), v);
    if (t.empty() || r.ec != std::errc() || r.ptr != t.data() + t.size() || !std::isfinite(v)) return std::nullopt;
    return v;
}

std::optional<bool> leggiSiNo(const std::string& t) {
    const std::string l = minuscolo(t);
    if (l == "sì" || l == "si" || l == "1" || l == "vero") return true;
    if (l == "no" || l == "0" || l == "falso" || l.empty()) return false;
    return std::nullopt;
}

const char* nomeTipoBanda(TipoBanda t) {
    switch (t) {
    case TipoBanda::IntestazioneReport: return "Intestazione report";
    case TipoBanda::IntestazionePagina: return "Intestazione pagina";
    case TipoBanda::Riporto: return "Riporto";
    case TipoBanda::IntestazioneGruppo: return "Intestazione gruppo";
    case TipoBanda::Dettaglio: return "Dettaglio";
    case TipoBanda::PiedeGruppo: return "Piede gruppo";
    case TipoBanda::ARiportare: return "A riportare";
    case TipoBanda::PiedePagina: return "Piede pagina";
    case TipoBanda::PiedeReport: return "Piede report";
    }
    return "";
}

// The box an element covers, whichever way a line runs.
struct Riquadro {
    double x0, y0, x1, y1;
};
Riquadro riquadro(const Elemento& e) {
    return {std::min(e.x, e.x + e.larghezza), std::min(e.y, e.y + e.altezza), std::max(e.x, e.x + e.larghezza),
            std::max(e.y, e.y + e.altezza)};
}

// A shift of [a, b] kept inside [0, limite], unless it lies outside already: then it may only go back in.
double limita(double d, double a, double b, double limite) {
    return std::clamp(d, std::min(0.0, -a), std::max(0.0, limite - b));
}

}  // namespace

const std::vector<Proprieta>& ProprietaDi(TipoElemento tipo) {
    using P = Proprieta;
    static const std::vector<P> testo{P::Testo, P::Carattere, P::Punti, P::Grassetto, P::Corsivo, P::Allinea,
                                      P::Cresce, P::X, P::Y, P::Larghezza, P::Altezza};
    static const std::vector<P> campo{P::Campo, P::Somma, P::Ambito, P::Maschera, P::Carattere, P::Punti, P::Grassetto,
                                      P::Corsivo, P::Allinea, P::Cresce, P::X, P::Y, P::Larghezza, P::Altezza};
    static const std::vector<P> tratto{P::Spessore, P::X, P::Y, P::Larghezza, P::Altezza};
    static const std::vector<P> immagine{P::File, P::X, P::Y, P::Larghezza, P::Altezza};
    switch (tipo) {
    case TipoElemento::Testo: return testo;
    case TipoElemento::Campo: return campo;
    case TipoElemento::Linea:
    case TipoElemento::Riquadro: return tratto;
    case TipoElemento::Immagine: return immagine;
    }
    return testo;
}

EditorModello::EditorModello(Modello modello) : m_(std::move(modello)), salvato_(m_) { elenca(); }

// Top to bottom as the page shows them: the headings, the groups' headings outermost first, the
// detail, the groups' feet innermost first, then the feet.
void EditorModello::elenca() {
    posti_.clear();
    auto del = [&](TipoBanda t) {
        if (m_.banda(t)) posti_.push_back({-1, t});
    };
    del(TipoBanda::IntestazioneReport);
    del(TipoBanda::IntestazionePagina);
    del(TipoBanda::Riporto);
    for (int g = 0; g < static_cast<int>(m_.gruppi.size()); ++g)
        if (m_.gruppi[g].intestazione) posti_.push_back({g, TipoBanda::IntestazioneGruppo});
    del(TipoBanda::Dettaglio);
    for (int g = static_cast<int>(m_.gruppi.size()); g-- > 0;)
        if (m_.gruppi[g].piede) posti_.push_back({g, TipoBanda::PiedeGruppo});
    del(TipoBanda::PiedeReport);
    del(TipoBanda::ARiportare);
    del(TipoBanda::PiedePagina);
}

Banda& EditorModello::bandaMod(int i) {
    const Posto& p = posti_.at(static_cast<std::size_t>(i));
    if (p.gruppo >= 0) {
        Gruppo& g = m_.gruppi[p.gruppo];
        return p.tipo == TipoBanda::IntestazioneGruppo ? *g.intestazione : *g.piede;
    }
    for (auto& b : m_.bande)
        if (b.tipo == p.tipo) return b;
    throw ErroreReport(ErrNomeMancante, "banda mancante");
}

std::string EditorModello::NomeBanda(int i) const {
    const Posto& p = posti_.at(static_cast<std::size_t>(i));
    std::string nome = nomeTipoBanda(p.tipo);
    if (p.gruppo >= 0) nome += " " + m_.gruppi[p.gruppo].campo;
    return nome;
}

double EditorModello::Cima(int i) const {
    double y = m_.pagina.alto;
    for (int k = 0; k < i; ++k) y += Striscia + banda(k).altezza;
    return y + Striscia;
}

double EditorModello::AltezzaDisegno() const {
    const double fondo = Bande() > 0 ? Cima(Bande() - 1) + banda(Bande() - 1).altezza : m_.pagina.alto;
    return std::max(fondo + m_.pagina.basso, m_.pagina.altezza);
}

const Elemento* EditorModello::Selezionato() const { return const_cast<EditorModello*>(this)->selezionatoMod(); }

Elemento* EditorModello::selezionatoMod() {
    if (sel_.banda < 0 || sel_.elemento < 0) return nullptr;
    return &bandaMod(sel_.banda).elementi[static_cast<std::size_t>(sel_.elemento)];
}

void EditorModello::Seleziona(Selezione s) {
    const bool valida = s.banda >= 0 && s.banda < Bande() &&
                        s.elemento >= -1 && s.elemento < static_cast<int>(banda(s.banda).elementi.size());
    sel_ = valida ? s : Selezione{};
}

bool EditorModello::SelezionaAccanto(bool avanti) {
    std::vector<Selezione> ordine;
    for (int i = 0; i < Bande(); ++i)
        for (int k = -1; k < static_cast<int>(banda(i).elementi.size()); ++k) ordine.push_back({i, k});
    const auto it = std::find(ordine.begin(), ordine.end(), sel_);
    const auto n = static_cast<std::ptrdiff_t>(ordine.size());
    const std::ptrdiff_t qui = it == ordine.end() ? (avanti ? -1 : n) : it - ordine.begin();
    const std::ptrdiff_t la = qui + (avanti ? 1 : -1);
    sel_ = la >= 0 && la < n ? ordine[static_cast<std::size_t>(la)] : Selezione{};
    return la >= 0 && la < n;
}

Selezione EditorModello::Colpito(double x, double y) const {
    const double xb = x - m_.pagina.sinistro;
    for (int i = 0; i < Bande(); ++i) {
        const double cima = Cima(i);
        if (y < cima - Striscia || y > cima + banda(i).altezza) continue;
        const double yb = y - cima;
        const auto& el = banda(i).elementi;
        // The last drawn is on top; a line is taken within half a millimetre of it.
        for (int k = static_cast<int>(el.size()); k-- > 0;) {
            const Riquadro r = riquadro(el[k]);
            const double margine = el[k].tipo == TipoElemento::Linea ? 0.5 : 0;
            if (xb >= r.x0 - margine && xb <= r.x1 + margine && yb >= r.y0 - margine && yb <= r.y1 + margine)
                return {i, k};
        }
        return {i, -1};
    }
    return {};
}

Presa EditorModello::PresaIn(double x, double y, double tolleranza) const {
    const double xb = x - m_.pagina.sinistro;
    if (const Elemento* e = Selezionato()) {
        const double cima = Cima(sel_.banda);
        const Riquadro r = riquadro(*e);
        const double yb = y - cima;
        const bool dentroX = xb >= r.x0 - tolleranza && xb <= r.x1 + tolleranza;
        const bool dentroY = yb >= r.y0 - tolleranza && yb <= r.y1 + tolleranza;
        if (dentroX && dentroY) {
            const bool o = std::abs(xb - r.x0) <= tolleranza, est = std::abs(xb - r.x1) <= tolleranza;
            const bool n = std::abs(yb - r.y0) <= tolleranza, s = std::abs(yb - r.y1) <= tolleranza;
            if (n && o) return Presa::NordOvest;
            if (n && est) return Presa::NordEst;
            if (s && o) return Presa::SudOvest;
            if (s && est) return Presa::SudEst;
            if (n) return Presa::Nord;
            if (s) return Presa::Sud;
            if (o) return Presa::Ovest;
            if (est) return Presa::Est;
            return Presa::Corpo;
        }
    }
    for (int i = 0; i < Bande(); ++i)
        if (std::abs(y - (Cima(i) + banda(i).altezza)) <= tolleranza && xb >= 0 && xb <= larghezzaBande())
            return Presa::FondoBanda;
    const Selezione s = Colpito(x, y);
    return s.elemento >= 0 ? Presa::Corpo : Presa::Nessuna;
}

void EditorModello::registra() {
    if (gesto_ && gestoRegistrato_) return;
    indietro_.push_back({m_, sel_});
    if (indietro_.size() > kPassiMassimi) indietro_.erase(indietro_.begin());
    avanti_.clear();
    if (gesto_) gestoRegistrato_ = true;
}

void EditorModello::ApriGesto() {
    gesto_ = true;
    gestoRegistrato_ = false;
}

void EditorModello::ChiudiGesto() {
    if (gesto_ && gestoRegistrato_ && indietro_.back().m == m_) indietro_.pop_back();
    gesto_ = false;
    gestoRegistrato_ = false;
}

bool EditorModello::Sposta(double dx, double dy) {
    Elemento* e = selezionatoMod();
    if (!e) return false;
    const Riquadro r = riquadro(*e);
    dx = limita(dx, r.x0, r.x1, larghezzaBande());
    dy = limita(dy, r.y0, r.y1, banda(sel_.banda).altezza);
    const double x = arrotonda(e->x + dx), y = arrotonda(e->y + dy);
    if (x == e->x && y == e->y) return false;
    registra();
    e = selezionatoMod();
    e->x = x;
    e->y = y;
    return true;
}

bool EditorModello::Ridimensiona(Presa presa, double dx, double dy) {
    if (sel_.banda < 0) return false;
    if (presa == Presa::FondoBanda || sel_.elemento < 0) {
        if (presa != Presa::FondoBanda && presa != Presa::Sud) return false;
        const Banda& b = banda(sel_.banda);
        double minimo = 0;
        for (const auto& e : b.elementi) minimo = std::max(minimo, riquadro(e).y1);
        const double altezza = arrotonda(std::clamp(b.altezza + dy, std::min(minimo, b.altezza), 10000.0));
        if (altezza == b.altezza) return false;
        registra();
        bandaMod(sel_.banda).altezza = altezza;
        return true;
    }
    const Elemento* e = Selezionato();
    const bool linea = e->tipo == TipoElemento::Linea;
    const double minimo = linea ? 0 : kMinimo;
    const double limiteX = larghezzaBande(), limiteY = banda(sel_.banda).altezza;
    double x0 = e->x, y0 = e->y, x1 = e->x + e->larghezza, y1 = e->y + e->altezza;
    const bool ovest = presa == Presa::Ovest || presa == Presa::NordOvest || presa == Presa::SudOvest;
    const bool est = presa == Presa::Est || presa == Presa::NordEst || presa == Presa::SudEst;
    const bool nord = presa == Presa::Nord || presa == Presa::NordEst || presa == Presa::NordOvest;
    const bool sud = presa == Presa::Sud || presa == Presa::SudEst || presa == Presa::SudOvest;
    // An edge stays inside the band (unless it was outside already) and short of the opposite one.
    if (ovest) x0 = std::clamp(x0 + dx, std::min(0.0, x0), std::max(x0, x1 - minimo));
    if (est) x1 = std::clamp(x1 + dx, std::min(x1, x0 + minimo), std::max(limiteX, x1));
    if (nord) y0 = std::clamp(y0 + dy, std::min(0.0, y0), std::max(y0, y1 - minimo));
    if (sud) y1 = std::clamp(y1 + dy, std::min(y1, y0 + minimo), std::max(limiteY, y1));
    Elemento nuovo = *e;
    nuovo.x = arrotonda(x0);
    nuovo.y = arrotonda(y0);
    nuovo.larghezza = arrotonda(x1 - x0);
    nuovo.altezza = arrotonda(y1 - y0);
    if (nuovo == *e) return false;
    registra();
    *selezionatoMod() = nuovo;
    return true;
}

std::string EditorModello::Valore(Proprieta p) const {
    const Elemento* e = Selezionato();
    if (!e) return p == Proprieta::Altezza && sel_.banda >= 0 ? numeroTesto(banda(sel_.banda).altezza) : std::string();
    auto siNo = [](bool b) { return std::string(b ? "Sì" : "No"); };
    switch (p) {
    case Proprieta::Testo: return e->testo;
    case Proprieta::Campo: return e->campo;
    case Proprieta::Somma: return e->somma;
    case Proprieta::Ambito: return e->ambito == Ambito::Gruppo ? "Gruppo" : e->ambito == Ambito::Pagina ? "Pagina" : "Report";
    case Proprieta::Maschera: return e->maschera;
    case Proprieta::File: return e->file;
    case Proprieta::Carattere: return e->carattere.famiglia;
    case Proprieta::Punti: return numeroTesto(e->carattere.punti);
    case Proprieta::Grassetto: return siNo(e->carattere.grassetto);
    case Proprieta::Corsivo: return siNo(e->carattere.corsivo);
    case Proprieta::Allinea:
        return e->allinea == Allineamento::Destra ? "Destra" : e->allinea == Allineamento::Centro ? "Centro" : "Sinistra";
    case Proprieta::Spessore: return numeroTesto(e->spessore);
    case Proprieta::Cresce: return siNo(e->cresce);
    case Proprieta::X: return numeroTesto(e->x);
    case Proprieta::Y: return numeroTesto(e->y);
    case Proprieta::Larghezza: return numeroTesto(e->larghezza);
    case Proprieta::Altezza: return numeroTesto(e->altezza);
    }
    return {};
}

std::string EditorModello::Imposta(Proprieta p, const std::string& valore) {
    if (sel_.banda < 0) return "Nessun elemento scelto.";
    const Elemento* scelto = Selezionato();
    if (!scelto) {
        if (p != Proprieta::Altezza) return "Una banda ha solo la sua altezza.";
        const auto v = leggiNumero(valore);
        if (!v || *v < 0 || *v > 10000) return "L'altezza della banda deve essere un numero tra 0 e 10000.";
        double minimo = 0;
        for (const auto& e : banda(sel_.banda).elementi) minimo = std::max(minimo, riquadro(e).y1);
        if (*v < minimo - 1e-9)
            return "La banda contiene elementi fino a " + numeroTesto(minimo) + " mm: non può essere più bassa.";
        if (arrotonda(*v) == banda(sel_.banda).altezza) return {};
        registra();
        bandaMod(sel_.banda).altezza = arrotonda(*v);
        return {};
    }
    const auto& ammesse = ProprietaDi(scelto->tipo);
    if (std::find(ammesse.begin(), ammesse.end(), p) == ammesse.end()) return "Questo elemento non ha la proprietà.";

    Elemento e = *scelto;
    auto numero = [&](double& dove, double minimo, const char* nome) -> std::string {
        const auto v = leggiNumero(valore);
        if (!v || *v < minimo || *v > 10000)
            return std::string(nome) + " deve essere un numero tra " + numeroTesto(minimo) + " e 10000.";
        dove = arrotonda(*v);
        return {};
    };
    auto siNo = [&](bool& dove) -> std::string {
        const auto v = leggiSiNo(valore);
        if (!v) return "Il valore deve essere Sì o No.";
        dove = *v;
        return {};
    };
    std::string errore;
    const bool linea = e.tipo == TipoElemento::Linea;
    switch (p) {
    case Proprieta::Testo:
        for (const auto& pezzo : Pezzi(valore)) {
            if (pezzo.tipo != '{') continue;
            const std::string n = minuscolo(pezzo.testo);
            bool dichiarato = n == "pagina" || n == "pagine";
            for (const auto& par : m_.parametri) dichiarato = dichiarato || minuscolo(par.nome) == n;
            if (!dichiarato) return "Il testo usa {" + pezzo.testo + "}, che non è un parametro dichiarato dal report.";
        }
        e.testo = valore;
        break;
    case Proprieta::Campo:
    case Proprieta::Somma: {
        std::string& dove = p == Proprieta::Campo ? e.campo : e.somma;
        dove = valore;
        dove.erase(0, dove.find_first_not_of(' '));
        dove.erase(dove.find_last_not_of(' ') + 1);
        if (e.campo.empty() && e.somma.empty()) return "Un campo deve mostrare un campo o una somma.";
        if (e.somma.empty()) e.ambito = Ambito::Report;   // the file keeps the scope only of a sum
        break;
    }
    case Proprieta::Ambito: {
        const std::string l = minuscolo(valore);
        if (e.somma.empty()) return "L'ambito vale solo per una somma.";
        if (l == "report") e.ambito = Ambito::Report;
        else if (l == "gruppo") e.ambito = Ambito::Gruppo;
        else if (l == "pagina") e.ambito = Ambito::Pagina;
        else return "L'ambito deve essere Report, Gruppo o Pagina.";
        break;
    }
    case Proprieta::Maschera: e.maschera = valore; break;
    case Proprieta::File:
        if (valore.find_first_not_of(' ') == std::string::npos) return "Un'immagine deve avere il suo file.";
        e.file = valore;
        break;
    case Proprieta::Carattere:
        if (valore.find_first_not_of(' ') == std::string::npos) return "Il carattere deve avere un nome.";
        e.carattere.famiglia = valore;
        break;
    case Proprieta::Punti: {
        errore = numero(e.carattere.punti, 1, "La dimensione del carattere");
        break;
    }
    case Proprieta::Grassetto: errore = siNo(e.carattere.grassetto); break;
    case Proprieta::Corsivo: errore = siNo(e.carattere.corsivo); break;
    case Proprieta::Cresce: errore = siNo(e.cresce); break;
    case Proprieta::Allinea: {
        const std::string l = minuscolo(valore);
        if (l == "sinistra") e.allinea = Allineamento::Sinistra;
        else if (l == "centro") e.allinea = Allineamento::Centro;
        else if (l == "destra") e.allinea = Allineamento::Destra;
        else return "L'allineamento deve essere Sinistra, Centro o Destra.";
        break;
    }
    case Proprieta::Spessore: errore = numero(e.spessore, 0, "Lo spessore"); break;
    case Proprieta::X: errore = numero(e.x, 0, "La posizione orizzontale"); break;
    case Proprieta::Y: errore = numero(e.y, 0, "La posizione verticale"); break;
    case Proprieta::Larghezza: errore = numero(e.larghezza, linea ? 0 : kMinimo, "La larghezza"); break;
    case Proprieta::Altezza: errore = numero(e.altezza, linea ? 0 : kMinimo, "L'altezza"); break;
    }
    if (!errore.empty()) return errore;
    if (p == Proprieta::X || p == Proprieta::Larghezza) {
        const Riquadro r = riquadro(e);
        if (r.x1 > larghezzaBande() + 1e-9)
            return "L'elemento uscirebbe dalla pagina: la larghezza utile è di " + numeroTesto(larghezzaBande()) + " mm.";
    }
    if (p == Proprieta::Y || p == Proprieta::Altezza) {
        const Riquadro r = riquadro(e);
        if (r.y1 > banda(sel_.banda).altezza + 1e-9)
            return "L'elemento uscirebbe dalla banda, alta " + numeroTesto(banda(sel_.banda).altezza) + " mm.";
    }
    if (e == *scelto) return {};
    registra();
    *selezionatoMod() = std::move(e);
    return {};
}

bool EditorModello::Aggiungi(TipoElemento tipo, const std::string& campo) {
    int b = sel_.banda;
    for (int i = 0; b < 0 && i < Bande(); ++i)
        if (posti_[i].tipo == TipoBanda::Dettaglio) b = i;
    if (b < 0 && Bande() > 0) b = 0;
    if (b < 0) return false;
    Elemento e;
    e.tipo = tipo;
    e.larghezza = tipo == TipoElemento::Linea ? 40 : tipo == TipoElemento::Campo ? 30 : 40;
    e.altezza = tipo == TipoElemento::Linea ? 0 : tipo == TipoElemento::Riquadro || tipo == TipoElemento::Immagine ? 20 : 5;
    e.larghezza = std::min(e.larghezza, larghezzaBande());
    if (tipo == TipoElemento::Testo) e.testo = "Testo";
    if (tipo == TipoElemento::Campo) e.campo = campo.empty() ? "Campo" : campo;
    if (tipo == TipoElemento::Immagine) e.file = campo.empty() ? "logo.png" : campo;
    registra();
    Banda& banda = bandaMod(b);
    // A band too low for the new element grows to hold it.
    if (banda.altezza < e.altezza) banda.altezza = e.altezza;
    if (tipo == TipoElemento::Linea && banda.altezza < 0.5) banda.altezza = 0.5;
    banda.elementi.push_back(std::move(e));
    sel_ = {b, static_cast<int>(banda.elementi.size()) - 1};
    return true;
}

bool EditorModello::Elimina() {
    if (!Selezionato()) return false;
    registra();
    auto& el = bandaMod(sel_.banda).elementi;
    el.erase(el.begin() + sel_.elemento);
    sel_.elemento = -1;
    return true;
}

bool EditorModello::Annulla() { return passa(indietro_, avanti_); }
bool EditorModello::Ripeti() { return passa(avanti_, indietro_); }

// The state on top of da becomes the current one, and the current one goes on top of a.
bool EditorModello::passa(std::vector<Stato>& da, std::vector<Stato>& a) {
    if (da.empty() || gesto_) return false;
    a.push_back({std::move(m_), sel_});
    m_ = std::move(da.back().m);
    sel_ = da.back().sel;
    da.pop_back();
    elenca();
    return true;
}

std::map<std::string, std::vector<std::string>> ColonneSubReport(const Modello& modello, store::Database* archivio,
                                                                 store::Database* temp, long azienda,
                                                                 store::Database* aziende) {
    std::map<std::string, std::vector<std::string>> colonne;
    Dati prime;   // the first row of each statement that ran, for the {Sub.Campo} of those after it
    for (const auto& sub : modello.subReports) {
        auto& campi = colonne[sub.nome];
        store::Database* db = DatabaseDi(sub, archivio, temp, aziende);
        const std::string sql = TestoNoto(TestoQuery(modello, sub), prime, azienda);
        if (!db || sql.find_first_not_of(" \t\r\n") == std::string::npos) continue;
        try {
            auto rs = db->OpenRecordset(sql);
            Tabella t;
            for (int i = 0; i < rs->FieldCount(); ++i) t.campi.push_back(rs->Fields(i).Name());
            if (!rs->Eof()) {
                auto& riga = t.righe.emplace_back();
                for (int i = 0; i < rs->FieldCount(); ++i) riga.push_back(rs->Fields(i).value());
            }
            campi = t.campi;
            prime[minuscolo(sub.nome)] = std::move(t);
        } catch (const store::JetError&) {
            campi.clear();
        }
    }
    return colonne;
}

std::vector<std::string> CampiScelti(const Modello& modello,
                                     const std::map<std::string, std::vector<std::string>>& colonne) {
    // The detail's own first: they are the ones a list puts on its lines.
    std::vector<std::string> campi, altri;
    for (const auto& sub : modello.subReports) {
        auto it = colonne.find(sub.nome);
        if (it == colonne.end()) continue;
        const bool elenco = minuscolo(sub.nome) == minuscolo(modello.sorgente);
        for (const auto& c : it->second) (elenco ? campi : altri).push_back(elenco ? c : sub.nome + "." + c);
    }
    campi.insert(campi.end(), altri.begin(), altri.end());
    return campi;
}

std::vector<std::string> CampiSconosciuti(const Modello& modello,
                                          const std::map<std::string, std::vector<std::string>>& colonne) {
    std::vector<std::string> errori;
    std::set<std::string> visti;
    auto guarda = [&](const std::string& nome) {
        if (nome.empty() || !visti.insert(minuscolo(nome)).second) return;
        std::string sub = modello.sorgente, campo = nome;
        const auto punto = nome.find('.');
        if (punto != std::string::npos && modello.subReport(nome.substr(0, punto))) {
            sub = modello.subReport(nome.substr(0, punto))->nome;
            campo = nome.substr(punto + 1);
        }
        if (sub.empty()) {
            errori.push_back("Il campo " + nome + " non ha un sub-report da cui leggere.");
            return;
        }
        const SubReportDichiarato* s = modello.subReport(sub);
        auto it = s ? colonne.find(s->nome) : colonne.end();
        // A statement that did not run gives no columns: nothing can be said of its fields.
        if (it == colonne.end() || it->second.empty()) return;
        for (const auto& c : it->second)
            if (minuscolo(c) == minuscolo(campo)) return;
        errori.push_back("Il campo " + campo + " non è tra quelli della query del sub-report " + s->nome + ".");
    };
    auto banda = [&](const Banda& b) {
        for (const auto& e : b.elementi) {
            guarda(e.campo);
            guarda(e.somma);
            for (const auto& p : Pezzi(e.testo))
                if (p.tipo == '[') guarda(p.testo.substr(0, p.testo.find('|')));
        }
    };
    for (const auto& b : modello.bande) banda(b);
    for (const auto& g : modello.gruppi) {
        guarda(g.campo);
        if (g.intestazione) banda(*g.intestazione);
        if (g.piede) banda(*g.piede);
    }
    return errori;
}

Documento PrimaPagina(const Modello& modello, const Dati& dati, const Misuratore& misuratore,
                      const std::string& cartellaImmagini, const std::string& nomeFile) {
    // As many rows as the page could hold at the detail's height, and one more to show the page break.
    const Banda* dettaglio = modello.banda(TipoBanda::Dettaglio);
    const double altezza = dettaglio ? std::max(dettaglio->altezza, 1.0) : 1.0;
    const auto righe = static_cast<std::size_t>(modello.pagina.altezzaUtile() / altezza) + 1;
    Dati taglio = dati;
    auto it = taglio.find(minuscolo(modello.sorgente));
    if (it != taglio.end() && it->second.righe.size() > righe) it->second.righe.resize(righe);
    Documento doc = Impagina(modello, taglio, misuratore, cartellaImmagini, nomeFile);
    if (doc.pagine.size() > 1) doc.pagine.resize(1);
    return doc;
}

}  // namespace ui::report
