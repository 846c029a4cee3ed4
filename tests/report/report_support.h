// What the report tests share: a small list layout whose sizes make the page breaks easy to count,
// an archive of movements to run it on, and the text of a PDF read back with pdftotext.
#pragma once

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "store/dao.h"
#include "support/sessione_prova.h"
#include "ui/report/Impaginazione.h"

namespace prova {

// Page 100 mm high with no margins: page heading 10, rows 10, the carried total 10, page foot 10.
// The first page holds 7 rows, the next ones 6 (under the carried total).
inline std::string ReportElenco(const std::string& extra = {}, const std::string& gruppo = {}) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<report formato="brevano-report" versione="1" titolo="Elenco movimenti" sorgente="Elenco">
  <pagina larghezza="150" altezza="100" sinistro="0" destro="0" alto="0" basso="0"/>
  <parametro nome="Titolo" valore="Movimenti"/>
  <subreport nome="Elenco" database="archivio">
    <query>Select Cliente, Descrizione, Importo from Movimenti order by ID</query>
  </subreport>
  <banda tipo="intestazionePagina" altezza="10">
    <testo x="0" y="0" larghezza="80" altezza="10">Descrizione</testo>
    <testo x="80" y="0" larghezza="40" altezza="10" allinea="destra">Importo</testo>
  </banda>
  <banda tipo="riporto" altezza="10">
    <testo x="0" y="0" larghezza="80" altezza="10">Riporto</testo>
    <campo x="80" y="0" larghezza="40" altezza="10" somma="Importo" maschera="#,0.00" allinea="destra"/>
  </banda>
)" + gruppo + R"(
  <banda tipo="dettaglio" altezza="10">
    <campo x="0" y="0" larghezza="80" altezza="10" nome="Descrizione"/>
    <campo x="80" y="0" larghezza="40" altezza="10" nome="Importo" maschera="#,0.00" allinea="destra"/>
  </banda>
  <banda tipo="aRiportare" altezza="10">
    <testo x="0" y="0" larghezza="80" altezza="10">A riportare</testo>
    <campo x="80" y="0" larghezza="40" altezza="10" somma="Importo" maschera="#,0.00" allinea="destra"/>
  </banda>
  <banda tipo="piedePagina" altezza="10">
    <testo x="0" y="0" larghezza="120" altezza="10" allinea="centro">Pagina {Pagina} di {Pagine}</testo>
  </banda>
  <banda tipo="piedeReport" altezza="10">
    <testo x="0" y="0" larghezza="80" altezza="10">Totale {Titolo}</testo>
    <campo x="80" y="0" larghezza="40" altezza="10" somma="Importo" maschera="#,0.00" allinea="destra"/>
  </banda>)" + extra + R"(
</report>
)";
}

// Movimenti with rows "Riga 1" ... "Riga n", amount i + 0.5, customer "Cliente <(i-1)/perCliente+1>".
inline void CreaMovimenti(store::Database& db, int n, int perCliente = 1000) {
    db.Execute("Create Table Movimenti (ID Long, Cliente Text(50), Descrizione Text(100), Importo Double)");
    store::WriteBatch lotto(db);
    for (int i = 1; i <= n; ++i)
        db.Execute("Insert Into Movimenti (ID,Cliente,Descrizione,Importo) VALUES (" + std::to_string(i) + ",'Cliente " +
                   std::to_string((i - 1) / perCliente + 1) + "','Riga " + std::to_string(i) + "'," +
                   std::to_string(i) + ".5)");
    lotto.End();
}

// The text of each page of a PDF, as pdftotext lays it out.
inline std::vector<std::string> PagineDelPdf(const std::string& pdf) {
    std::string testo;
    if (FILE* f = ::popen(("pdftotext -layout '" + pdf + "' - 2>/dev/null").c_str(), "r")) {
        char buf[4096];
        for (size_t n; (n = std::fread(buf, 1, sizeof buf, f)) > 0;) testo.append(buf, n);
        ::pclose(f);
    }
    std::vector<std::string> pagine;
    std::stringstream s(testo);
    for (std::string p; std::getline(s, p, '\f');) pagine.push_back(p);
    if (!pagine.empty() && pagine.back().find_first_not_of(" \n") == std::string::npos) pagine.pop_back();
    return pagine;
}

// Every line of text counts 5 mm for each 20 characters (or part of them) per 40 mm of width.
class MisuratoreFisso : public ui::report::Misuratore {
public:
    double altezza(const ui::report::Carattere&, double larghezza, const std::string& testo) const override {
        const std::size_t perRiga = static_cast<std::size_t>(larghezza / 2);
        return 5.0 * static_cast<double>((testo.size() + perRiga - 1) / perRiga);
    }
};

}  // namespace prova
