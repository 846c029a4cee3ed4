#include "ui/report/Modello.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "store/convert.h"

namespace ui::report {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFormato = "brevano-report";
constexpr int kVersione = 1;

const std::map<std::string, TipoBanda>& nomiBande() {
    static const std::map<std::string, TipoBanda> m{
        {"intestazioneReport", TipoBanda::IntestazioneReport}, {"intestazionePagina", TipoBanda::IntestazionePagina},
        {"riporto", TipoBanda::Riporto},                       {"intestazioneGruppo", TipoBanda::IntestazioneGruppo},
        {"dettaglio", TipoBanda::Dettaglio},                   {"piedeGruppo", TipoBanda::PiedeGruppo},
        {"aRiportare", TipoBanda::ARiportare},                 {"piedePagina", TipoBanda::PiedePagina},
        {"piedeReport", TipoBanda::PiedeReport},
    };
    return m;
}

std::string nomeBanda(TipoBanda t) {
    for (const auto& [nome, tipo] : nomiBande())
        if (tipo == t) return nome;
    return {};
}

const char* nomeElemento(TipoElemento t) {
    switch (t) {
    case TipoElemento::Testo: return "testo";
    case TipoElemento::Campo: return "campo";
    case TipoElemento::Linea: return "linea";
    case TipoElemento::Riquadro: return "riquadro";
    case TipoElemento::Immagine: return "immagine";
    }
    return "";
}

std::string numeroTesto(double v) {
    char buf[32];
    auto r = std::to_chars(buf, buf + sizeof buf, v);
    return std::string(buf, r.ptr);
}

// The reading of one file: every complaint names the file and, for the XML, the line.
class Lettore {
public:
    Lettore(const std::string& testo, std::string nomeFile)
        : xml_(QByteArray::fromStdString(testo)), nome_(std::move(nomeFile)) {}

    Modello leggi() {
        Modello m;
        if (!xml_.readNextStartElement())
            fallisci(xml_.hasError() ? "file troncato o non valido" : "non è un report (manca l'elemento <report>)");
        if (xml_.name() != u"report" || attr("formato") != kFormato)
            fallisci("non è un report di questo programma");
        if (numero("versione", 1) > kVersione) fallisci("è di una versione più recente del programma");
        m.titolo = attr("titolo");
        m.sorgente = attr("sorgente");
        while (xml_.readNextStartElement()) {
            const auto n = xml_.name();
            if (n == u"pagina") {
                Pagina& p = m.pagina;
                p.larghezza = numero("larghezza", p.larghezza);
                p.altezza = numero("altezza", p.altezza);
                p.sinistro = numero("sinistro", p.sinistro);
                p.destro = numero("destro", p.destro);
                p.alto = numero("alto", p.alto);
                p.basso = numero("basso", p.basso);
                if (p.larghezzaUtile() < 10 || p.altezzaUtile() < 10) fallisci("la pagina non ha spazio tra i margini");
                xml_.skipCurrentElement();
            } else if (n == u"parametro") {
                m.parametri.push_back(parametro());
            } else if (n == u"subreport") {
                m.subReports.push_back(subReport());
            } else if (n == u"banda") {
                Banda b = banda();
                if (b.tipo == TipoBanda::IntestazioneGruppo || b.tipo == TipoBanda::PiedeGruppo)
                    fallisci("una banda di gruppo sta dentro il suo <gruppo>");
                if (m.banda(b.tipo)) fallisci("la banda " + nomeBanda(b.tipo) + " compare due volte");
                m.bande.push_back(std::move(b));
            } else if (n == u"gruppo") {
                m.gruppi.push_back(gruppo());
            } else {
                fallisci("elemento sconosciuto <" + xml_.name().toString().toStdString() + ">");
            }
        }
        if (xml_.hasError()) fallisci("file troncato o non valido");
        while (!xml_.atEnd()) xml_.readNext();
        if (xml_.hasError()) fallisci("file troncato o non valido");
        // The bands in the order they print, wherever the file put them.
        std::stable_sort(m.bande.begin(), m.bande.end(), [](const Banda& a, const Banda& b) { return a.tipo < b.tipo; });
        if (m.sorgente.empty() && m.banda(TipoBanda::Dettaglio) && !m.subReports.empty())
            m.sorgente = m.subReports.front().nome;
        controlla(m);
        return m;
    }

    [[noreturn]] void fallisci(const std::string& causa) {
        std::string testo = nome_ + ": " + causa;
        if (xml_.hasError())
            testo += " (riga " + std::to_string(xml_.lineNumber()) + ": " + xml_.errorString().toStdString() + ")";
        throw ErroreReport(ErrFormato, testo);
    }

private:
    std::string attr(const char* nome) const { return xml_.attributes().value(nome).toString().toStdString(); }
    bool ha(const char* nome) const { return xml_.attributes().hasAttribute(nome); }

    double numero(const char* nome, double predefinito) {
        if (!ha(nome)) return predefinito;
        const std::string t = attr(nome);
        double v = 0;
        auto r = std::from_chars(t.data(), t.data() + t.size(), v);
        if (t.empty() || r.ec != std::errc() || r.ptr != t.data() + t.size() || !std::isfinite(v) || v < -10000 ||
            v > 10000)
            fallisci("l'attributo " + std::string(nome) + "=\"" + t + "\" non è un numero");
        return v;
    }

    bool vero(const char* nome) { return attr(nome) == "1" || attr(nome) == "si"; }

    std::string testoElemento() {
        const QString t = xml_.readElementText(QXmlStreamReader::ErrorOnUnexpectedElement);
        if (xml_.hasError()) fallisci("file troncato o non valido");
        return t.toStdString();
    }

    ParametroDichiarato parametro() {
        ParametroDichiarato p{attr("nome"), attr("valore")};
        if (p.nome.empty()) fallisci("un parametro senza nome");
        xml_.skipCurrentElement();
        return p;
    }

    SubReportDichiarato subReport() {
        SubReportDichiarato s;
        s.nome = attr("nome");
        if (s.nome.empty()) fallisci("un sub-report senza nome");
        s.interno = vero("interno");
        const std::string db = attr("database");
        if (db == "temp") s.database = Archivio::Temp;
        else if (db == "aziende") s.database = Archivio::Aziende;
        else if (!db.empty() && db != "archivio") fallisci("il sub-report " + s.nome + " usa il database sconosciuto \"" + db + "\"");
        while (xml_.readNextStartElement()) {
            if (xml_.name() == u"parametro") s.parametri.push_back(parametro());
            else if (xml_.name() == u"query") s.query = testoElemento();
            else fallisci("elemento sconosciuto <" + xml_.name().toString().toStdString() + "> nel sub-report " + s.nome);
        }
        return s;
    }

    Gruppo gruppo() {
        Gruppo g;
        g.campo = attr("campo");
        if (g.campo.empty()) fallisci("un gruppo senza campo");
        while (xml_.readNextStartElement()) {
            if (xml_.name() != u"banda") fallisci("in un gruppo stanno solo le sue bande");
            Banda b = banda();
            std::optional<Banda>* posto = nullptr;
            if (b.tipo == TipoBanda::IntestazioneGruppo) posto = &g.intestazione;
            else if (b.tipo == TipoBanda::PiedeGruppo) posto = &g.piede;
            else fallisci("in un gruppo stanno solo le sue bande");
            if (*posto) fallisci("il gruppo su " + g.campo + " ha due bande dello stesso tipo");
            *posto = std::move(b);
        }
        return g;
    }

    Banda banda() {
        Banda b;
        auto it = nomiBande().find(attr("tipo"));
        if (it == nomiBande().end()) fallisci("banda di tipo sconosciuto \"" + attr("tipo") + "\"");
        b.tipo = it->second;
        b.altezza = numero("altezza", 0);
        if (b.altezza < 0) fallisci("una banda di altezza negativa");
        while (xml_.readNextStartElement()) b.elementi.push_back(elemento());
        return b;
    }

    Elemento elemento() {
        Elemento e;
        const auto n = xml_.name();
        if (n == u"testo") e.tipo = TipoElemento::Testo;
        else if (n == u"campo") e.tipo = TipoElemento::Campo;
        else if (n == u"linea") e.tipo = TipoElemento::Linea;
        else if (n == u"riquadro") e.tipo = TipoElemento::Riquadro;
        else if (n == u"immagine") e.tipo = TipoElemento::Immagine;
        else fallisci("elemento sconosciuto <" + n.toString().toStdString() + "> in una banda");
        if (e.tipo == TipoElemento::Linea) {
            e.x = numero("x1", 0);
            e.y = numero("y1", 0);
            // The difference of two written ends carries the error of the sum that wrote them:
            // a millionth of a millimetre is below any length a layout gives.
            e.larghezza = std::round((numero("x2", e.x) - e.x) * 1e6) / 1e6;
            e.altezza = std::round((numero("y2", e.y) - e.y) * 1e6) / 1e6;
        } else {
            e.x = numero("x", 0);
            e.y = numero("y", 0);
            e.larghezza = numero("larghezza", 0);
            e.altezza = numero("altezza", 0);
        }
        // A kind takes only the attributes it has, those Scrivi writes for it: any other is passed over
        // here too, so that what is read is what a save keeps (a box marked to repeat would otherwise
        // print once per row only until the editor saved it).
        if (e.tipo == TipoElemento::Linea || e.tipo == TipoElemento::Riquadro) e.spessore = numero("spessore", e.spessore);
        if (e.tipo == TipoElemento::Testo || e.tipo == TipoElemento::Campo) {
            const std::string al = attr("allinea");
            e.allinea = al == "destra" ? Allineamento::Destra : al == "centro" ? Allineamento::Centro : Allineamento::Sinistra;
            if (ha("carattere")) e.carattere.famiglia = attr("carattere");
            e.carattere.punti = numero("punti", e.carattere.punti);
            if (e.carattere.punti <= 0) fallisci("un carattere di punti non positivi");
            e.carattere.grassetto = vero("grassetto");
            e.carattere.corsivo = vero("corsivo");
            e.cresce = vero("cresce");
            e.ripeti = attr("ripeti");
        }
        e.campo = attr("nome");
        e.somma = attr("somma");
        e.maschera = attr("maschera");
        e.file = attr("file");
        const std::string amb = e.somma.empty() ? std::string() : attr("ambito");   // a sum's only
        e.ambito = amb == "gruppo" ? Ambito::Gruppo : amb == "pagina" ? Ambito::Pagina : Ambito::Report;
        if (e.tipo == TipoElemento::Campo && e.campo.empty() && e.somma.empty())
            fallisci("un <campo> senza nome né somma");
        if (e.tipo == TipoElemento::Immagine && e.file.empty()) fallisci("un'immagine senza file");
        if (e.tipo == TipoElemento::Testo) e.testo = testoElemento();
        else xml_.skipCurrentElement();
        return e;
    }

    // What the file names it must declare: the detail's sub-report, and every {name} of its texts.
    void controlla(const Modello& m) {
        if (!m.sorgente.empty() && !m.subReport(m.sorgente))
            fallisci("il dettaglio usa il sub-report " + m.sorgente + ", che non è dichiarato");
        auto dichiarato = [&](const std::string& n) {
            const std::string l = store::AsciiLower(n);
            if (l == "pagina" || l == "pagine") return true;
            for (const auto& p : m.parametri)
                if (store::AsciiLower(p.nome) == l) return true;
            return false;
        };
        auto guarda = [&](const Banda& b) {
            for (const auto& e : b.elementi) {
                if (!e.ripeti.empty() && !m.subReport(e.ripeti))
                    fallisci("un elemento si ripete sul sub-report " + e.ripeti + ", che non è dichiarato");
                for (const auto& p : Pezzi(e.testo))
                    if (p.tipo == '{' && !dichiarato(p.testo)) fallisci("il testo usa {" + p.testo + "}, che non è un parametro dichiarato");
            }
        };
        for (const auto& b : m.bande) guarda(b);
        for (const auto& g : m.gruppi) {
            if (g.intestazione) guarda(*g.intestazione);
            if (g.piede) guarda(*g.piede);
        }
    }

    QXmlStreamReader xml_;
    std::string nome_;
};

void scriviElemento(QXmlStreamWriter& w, const Elemento& e) {
    w.writeStartElement(nomeElemento(e.tipo));
    auto num = [&](const char* n, double v) { w.writeAttribute(n, QString::fromStdString(numeroTesto(v))); };
    auto txt = [&](const char* n, const std::string& v) {
        if (!v.empty()) w.writeAttribute(n, QString::fromStdString(v));
    };
    if (e.tipo == TipoElemento::Linea) {
        num("x1", e.x);
        num("y1", e.y);
        num("x2", e.x + e.larghezza);
        num("y2", e.y + e.altezza);
    } else {
        num("x", e.x);
        num("y", e.y);
        num("larghezza", e.larghezza);
        num("altezza", e.altezza);
    }
    if (e.tipo == TipoElemento::Linea || e.tipo == TipoElemento::Riquadro) num("spessore", e.spessore);
    if (e.tipo == TipoElemento::Testo || e.tipo == TipoElemento::Campo) {
        if (e.allinea != Allineamento::Sinistra) txt("allinea", e.allinea == Allineamento::Destra ? "destra" : "centro");
        if (e.carattere.famiglia != Carattere{}.famiglia) txt("carattere", e.carattere.famiglia);
        num("punti", e.carattere.punti);
        if (e.carattere.grassetto) txt("grassetto", "1");
        if (e.carattere.corsivo) txt("corsivo", "1");
        if (e.cresce) txt("cresce", "1");
        txt("ripeti", e.ripeti);
    }
    txt("nome", e.campo);
    txt("somma", e.somma);
    if (!e.somma.empty() && e.ambito != Ambito::Report) txt("ambito", e.ambito == Ambito::Gruppo ? "gruppo" : "pagina");
    txt("maschera", e.maschera);
    txt("file", e.file);
    if (e.tipo == TipoElemento::Testo) w.writeCharacters(QString::fromStdString(e.testo));
    w.writeEndElement();
}

void scriviBanda(QXmlStreamWriter& w, const Banda& b) {
    w.writeStartElement("banda");
    w.writeAttribute("tipo", QString::fromStdString(nomeBanda(b.tipo)));
    w.writeAttribute("altezza", QString::fromStdString(numeroTesto(b.altezza)));
    for (const auto& e : b.elementi) scriviElemento(w, e);
    w.writeEndElement();
}

void scriviParametro(QXmlStreamWriter& w, const ParametroDichiarato& p) {
    w.writeStartElement("parametro");
    w.writeAttribute("nome", QString::fromStdString(p.nome));
    if (!p.valore.empty()) w.writeAttribute("valore", QString::fromStdString(p.valore));
    w.writeEndElement();
}

}  // namespace

const Banda* Modello::banda(TipoBanda tipo) const {
    for (const auto& b : bande)
        if (b.tipo == tipo) return &b;
    return nullptr;
}

SubReportDichiarato* Modello::subReport(const std::string& nome) {
    for (auto& s : subReports)
        if (store::AsciiLower(s.nome) == store::AsciiLower(nome)) return &s;
    return nullptr;
}

const SubReportDichiarato* Modello::subReport(const std::string& nome) const {
    return const_cast<Modello*>(this)->subReport(nome);
}

std::vector<Pezzo> Pezzi(const std::string& modello) {
    std::vector<Pezzo> pezzi;
    std::string letterale;
    for (std::size_t i = 0; i < modello.size(); ++i) {
        const char c = modello[i];
        const char chiusa = c == '[' ? ']' : c == '{' ? '}' : 0;
        const std::size_t fine = chiusa ? modello.find(chiusa, i + 1) : std::string::npos;
        if (fine == std::string::npos) {
            letterale += c;
            continue;
        }
        if (!letterale.empty()) pezzi.push_back({0, std::move(letterale)});
        letterale.clear();
        pezzi.push_back({c, modello.substr(i + 1, fine - i - 1)});
        i = fine;
    }
    if (!letterale.empty()) pezzi.push_back({0, std::move(letterale)});
    return pezzi;
}

Modello Leggi(const std::string& testo, const std::string& nomeFile) {
    Lettore l(testo, nomeFile);
    if (testo.find_first_not_of(" \t\r\n") == std::string::npos) l.fallisci("il file è vuoto");
    return l.leggi();
}

Modello Carica(const std::string& percorso) {
    const std::string nome = fs::path(percorso).filename().string();
    std::error_code ec;
    if (!fs::is_regular_file(percorso, ec)) throw ErroreReport(ErrFileMancante, nome + ": il file del report non esiste (" + percorso + ")");
    std::ifstream in(percorso, std::ios::binary);
    std::ostringstream testo;
    testo << in.rdbuf();
    if (!in.good() && !in.eof()) throw ErroreReport(ErrFileMancante, nome + ": il file del report non si può leggere");
    return Leggi(testo.str(), nome);
}

std::string Scrivi(const Modello& m) {
    QByteArray out;
    QXmlStreamWriter w(&out);
    w.setAutoFormatting(true);
    w.setAutoFormattingIndent(2);
    w.writeStartDocument();
    w.writeStartElement("report");
    w.writeAttribute("formato", kFormato);
    w.writeAttribute("versione", QString::number(kVersione));
    if (!m.titolo.empty()) w.writeAttribute("titolo", QString::fromStdString(m.titolo));
    if (!m.sorgente.empty()) w.writeAttribute("sorgente", QString::fromStdString(m.sorgente));
    const Pagina& p = m.pagina;
    w.writeStartElement("pagina");
    for (auto [n, v] : {std::pair{"larghezza", p.larghezza}, {"altezza", p.altezza}, {"sinistro", p.sinistro},
                        {"destro", p.destro}, {"alto", p.alto}, {"basso", p.basso}})
        w.writeAttribute(n, QString::fromStdString(numeroTesto(v)));
    w.writeEndElement();
    for (const auto& par : m.parametri) scriviParametro(w, par);
    for (const auto& s : m.subReports) {
        w.writeStartElement("subreport");
        w.writeAttribute("nome", QString::fromStdString(s.nome));
        w.writeAttribute("database", s.database == Archivio::Temp      ? "temp"
                                     : s.database == Archivio::Aziende ? "aziende"
                                                                       : "archivio");
        if (s.interno) w.writeAttribute("interno", "1");
        for (const auto& par : s.parametri) scriviParametro(w, par);
        w.writeTextElement("query", QString::fromStdString(s.query));
        w.writeEndElement();
    }
    // Bands in the order they print, the groups where the detail nests in them.
    for (const auto& b : m.bande)
        if (b.tipo < TipoBanda::IntestazioneGruppo) scriviBanda(w, b);
    for (const auto& g : m.gruppi) {
        w.writeStartElement("gruppo");
        w.writeAttribute("campo", QString::fromStdString(g.campo));
        if (g.intestazione) scriviBanda(w, *g.intestazione);
        if (g.piede) scriviBanda(w, *g.piede);
        w.writeEndElement();
    }
    for (const auto& b : m.bande)
        if (b.tipo > TipoBanda::IntestazioneGruppo) scriviBanda(w, b);
    w.writeEndElement();
    w.writeEndDocument();
    return out.toStdString();
}

void Salva(const Modello& modello, const std::string& percorso) {
    const std::string testo = Scrivi(modello);
    const std::string provvisorio = percorso + ".nuovo";
    {
        std::ofstream out(provvisorio, std::ios::binary | std::ios::trunc);
        out << testo;
        if (!out.flush()) {
            std::error_code ec;
            fs::remove(provvisorio, ec);
            throw ErroreReport(75, fs::path(percorso).filename().string() + ": il report non si può scrivere");
        }
    }
    std::error_code ec;
    fs::rename(provvisorio, percorso, ec);
    if (ec) {
        fs::remove(provvisorio, ec);
        throw ErroreReport(75, fs::path(percorso).filename().string() + ": il report non si può scrivere");
    }
}

}  // namespace ui::report
