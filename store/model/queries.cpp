// The saved queries of the archive and of the master file, in the program's SQL dialect.
//
// Every query starts from its base table and reaches each register through a LEFT JOIN, so a row
// whose link is 0 or points to a deleted row is still listed. Queries refer to tables only, never to
// other queries, so that the structure update can drop and recreate them in any order.
// Sums of payments and instalments are correlated subqueries on an indexed link: a look at one
// document or one instalment reads only its own payments.
#include <initializer_list>
#include <utility>

#include "store/model/model.h"

namespace store::model {

namespace {

// ---- fragments -----------------------------------------------------------------------------------

std::string nz(const std::string& expr) { return "IIf(IsNull(" + expr + "),0," + expr + ")"; }

std::string nomeCliente() { return "Clienti.DescCliente & ' ' & Clienti.DescCliente2"; }
std::string nomeFornitore() { return "Fornitori.DescFornitore & ' ' & Fornitori.DescFornitore2"; }

// The counterpart's name, customer or supplier, whichever the row is linked to.
std::string destinatario() {
    return "IIf(IsNull(Clienti.ID)," + nomeFornitore() + "," + nomeCliente() + ")";
}

std::string descNum(const std::string& t) { return t + ".Prefisso & " + t + ".Numero & " + t + ".Suffisso"; }

std::string nomeTipoDocumento(const std::string& t) {
    return "IIf(" + t + ".Tipo=5,'Fattura',IIf(" + t + ".Tipo=6,'Nota di credito',IIf(" + t +
           ".Tipo=7,'Preventivo',IIf(" + t + ".Tipo=9,'Nota di credito ricevuta','Documento'))))";
}

std::string descDocumento(const std::string& t) {
    return nomeTipoDocumento(t) + " & ' N.' & " + descNum(t) + " & ' del ' & " + t + ".Data";
}

std::string descSpesa(const std::string& t) { return "'Spesa N.' & " + t + ".Numero & ' del ' & " + t + ".Data"; }

// The description of what a due date or a payment is for: its document, else its expense, else blank.
std::string descDocumentoOSpesa() {
    return "IIf(IsNull(Documenti.ID),IIf(IsNull(Spese.ID),''," + descSpesa("Spese") + ")," +
           descDocumento("Documenti") + ")";
}

std::string totaleDocumentoOSpesa() { return "IIf(IsNull(Documenti.ID),Spese.ImportoSpesa,Documenti.ImportoTotale)"; }

std::string descEstrattoConto(const std::string& t) {
    return "IIf(" + t + ".EscludiEstrattoConto,'Escluso','Incluso')";
}

// Sum over the rows of `tabella` whose `legame` points to the outer row `esterno`.ID; 0 with none.
// The Null of an empty sum is replaced inside the subquery, so each use reads the rows once.
std::string somma(const std::string& tabella, const std::string& campo, const std::string& legame,
                  const std::string& esterno) {
    return "(SELECT " + nz("Sum(S." + campo + ")") + " FROM " + tabella + " AS S WHERE S." + legame + "=" + esterno +
           ".ID)";
}

std::string sommaPagamenti(const std::string& legame, const std::string& esterno) {
    return somma("Pagamenti", "ImportoPagamento", legame, esterno);
}

std::string differenza(const std::string& totale, const std::string& parte) {
    return "Round(" + nz(totale) + "-" + parte + ",2)";
}

// Money of a document settled by collections: fatture and supplier's credit notes.
std::string tipoAttivo(const std::string& t) { return "(" + t + ".Tipo=5 Or " + t + ".Tipo=9)"; }
// Settled by payments: every kind but those and quotes, which are never settled.
std::string tipoPassivo(const std::string& t) {
    return "(" + t + ".Tipo<>5 And " + t + ".Tipo<>7 And " + t + ".Tipo<>9)";
}

// 1 for a due date or payment on the collection side, 0 on the payment side; never Null, so the
// two sides split every row between them. With no document it goes by the counterpart: a customer
// collects, anything else pays.
std::string latoIncasso(const std::string& t) {
    return "IIf(IsNull(Documenti.ID),IIf(IsNull(Spese.ID) And " + t + ".Cliente>0,1,0),IIf(" +
           tipoAttivo("Documenti") + ",1,0))";
}

// ---- building ------------------------------------------------------------------------------------

struct Join {
    std::string tabella;
    std::string legame;  // the link field of a table already joined
};

std::string leftJoins(const std::string& base, const std::vector<Join>& joins) {
    std::string from = base;
    for (std::size_t i = 0; i < joins.size(); ++i) {
        if (i > 0) from = "(" + from + ")";
        from += " LEFT JOIN " + joins[i].tabella + " ON " + joins[i].legame + " = " + joins[i].tabella + ".ID";
    }
    return from;
}

using Colonne = std::vector<std::string>;

// Every field of a model table, qualified, with some renamed ("mail" -> "Mail").
Colonne campi(const std::string& tabella, std::initializer_list<std::pair<const char*, const char*>> alias = {}) {
    Colonne out;
    for (const Campo& c : TabellaModello(tabella).campi) {
        std::string col = tabella + "." + c.nome;
        for (const auto& [da, a] : alias)
            if (c.nome == da) col += std::string(" AS ") + a;
        out.push_back(col);
    }
    return out;
}

// Named fields of a table, qualified.
Colonne elenco(const std::string& tabella, std::initializer_list<const char*> nomi) {
    Colonne out;
    for (const char* n : nomi) out.push_back(tabella + "." + n);
    return out;
}

Colonne& operator+=(Colonne& a, const Colonne& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

std::string espressione(const std::string& expr, const std::string& nome) { return expr + " AS " + nome; }

std::string select(const Colonne& colonne, const std::string& from, const std::string& where = {}) {
    std::string sql = "SELECT ";
    for (std::size_t i = 0; i < colonne.size(); ++i) sql += (i ? ", " : "") + colonne[i];
    sql += " FROM " + from;
    if (!where.empty()) sql += " WHERE " + where;
    return sql;
}

// ---- registers -----------------------------------------------------------------------------------

std::string qrClienti() {
    Colonne c = campi("Clienti", {{"mail", "Mail"}, {"web", "Web"}});
    c.push_back(espressione(nomeCliente(), "Denominazione"));
    c.push_back("CodiciIva.DescIva");
    c.push_back("CondizioniPagamento.DescPagamento");
    return select(c, leftJoins("Clienti", {{"CodiciIva", "Clienti.IvaApplicata"},
                                           {"CondizioniPagamento", "Clienti.CondizioniPagamento"}}));
}

std::string qrFornitori() {
    return select(campi("Fornitori", {{"mail", "Mail"}, {"web", "Web"}}), "Fornitori");
}

// The line editor takes a service's second discount from here; the catalogue keeps one discount.
std::string qrServizi() {
    Colonne c = campi("Servizi");
    c += {"CodiciIva.DescIva", "CodiciIva.AliquotaIva", espressione(nz("Servizi.Sconto1"), "Sconto2")};
    return select(c, leftJoins("Servizi", {{"CodiciIva", "Servizi.CodiceIva"}}));
}

std::string qrUtenti() {
    Colonne c{"Utenti.ID", "Utenti.Azienda", "Utenti.Username AS UserName", "Utenti.Password", "Utenti.Accessi",
              "Aziende.Denominazione"};
    return select(c, leftJoins("Utenti", {{"Aziende", "Utenti.Azienda"}}));
}

// ---- documents -----------------------------------------------------------------------------------

const std::vector<Join>& joinDocumento() {
    static const std::vector<Join> j{{"Clienti", "Documenti.Cliente"},
                                     {"Fornitori", "Documenti.Fornitore"},
                                     {"CondizioniPagamento", "Documenti.CondizioniPagamento"}};
    return j;
}

// The counterpart's field: the customer's or the supplier's, whichever the document is linked to.
std::string controparte(const std::string& campo) {
    return "IIf(IsNull(Clienti.ID),Fornitori." + campo + ",Clienti." + campo + ") AS " + campo;
}

Colonne colonneDocumento() {
    Colonne c = campi("Documenti");
    c.push_back(espressione(nomeCliente(), "Denominazione"));
    c += {"Clienti.DescCliente", "Clienti.DescCliente2", "Fornitori.DescFornitore", "Fornitori.DescFornitore2"};
    for (const char* f : {"Indirizzo", "Cap", "Citta", "Provincia", "Telefono", "Fax", "PartitaIva", "CodiceFiscale"})
        c.push_back(controparte(f));
    c.push_back("CondizioniPagamento.DescPagamento");
    c.push_back(espressione(descNum("Documenti"), "DescNum"));
    c.push_back(espressione(descEstrattoConto("Documenti"), "DescEstrattoConto"));
    return c;
}

std::string qrDocumenti() { return select(colonneDocumento(), leftJoins("Documenti", joinDocumento())); }

std::string qrDocumentiDesc() {
    Colonne c = colonneDocumento();
    c.push_back(espressione(descDocumento("Documenti"), "DescDocumento"));
    return select(c, leftJoins("Documenti", joinDocumento()));
}

std::string documentiSaldo(const std::string& filtroTipo) {
    Colonne c = elenco("Documenti", {"ID", "Tipo", "Numero", "Prefisso", "Suffisso", "Data", "Cliente", "Fornitore",
                                     "EscludiEstrattoConto", "Pagato", "ImportoTotale"});
    c.push_back(espressione(descNum("Documenti"), "DescNum"));
    c.push_back(espressione(descDocumento("Documenti"), "DescDocumento"));
    c.push_back(espressione(destinatario(), "Destinatario"));
    c.push_back(espressione(sommaPagamenti("Documento", "Documenti"), "ImportoPagato"));
    c.push_back(espressione(differenza("Documenti.ImportoTotale", sommaPagamenti("Documento", "Documenti")),
                            "DaPagare"));
    return select(c, leftJoins("Documenti", {{"Clienti", "Documenti.Cliente"}, {"Fornitori", "Documenti.Fornitore"}}),
                  filtroTipo);
}

std::string qrDocumentiScadenze() {
    Colonne c = elenco("Documenti", {"ID", "Cliente", "Fornitore", "Tipo", "Numero", "Prefisso", "Suffisso", "Data",
                                     "ImportoTotale"});
    c.push_back(espressione(descNum("Documenti"), "DescNum"));
    c.push_back(espressione(descDocumento("Documenti"), "DescDocumento"));
    std::string scadenze = somma("Scadenze", "ImportoScadenza", "Documento", "Documenti");
    c.push_back(espressione(scadenze, "ImportoScadenze"));
    c.push_back(espressione(differenza("Documenti.ImportoTotale", scadenze), "Rimanente"));
    return select(c, "Documenti");
}

std::string qrMovimenti() {
    Colonne c = campi("Movimenti");
    c += {"CodiciIva.DescIva", "CodiciIva.AliquotaIva"};
    return select(c, leftJoins("Movimenti", {{"CodiciIva", "Movimenti.Iva"}}));
}

std::string qrMovimentiEx() {
    Colonne c = campi("Movimenti");
    c += elenco("Documenti", {"Tipo", "Cliente", "Fornitore", "Data", "Numero"});
    c.push_back(espressione(descNum("Documenti"), "DescNum"));
    c.push_back(espressione(destinatario(), "Destinatario"));
    return select(c, leftJoins("Movimenti", {{"Documenti", "Movimenti.Documento"},
                                             {"Clienti", "Documenti.Cliente"},
                                             {"Fornitori", "Documenti.Fornitore"}}));
}

std::string qrSpeseDocumenti() {
    Colonne c = campi("SpeseDocumenti");
    c += {"CodiciIva.DescIva", "CodiciIva.AliquotaIva"};
    // The same product, in the same order, as the document totals take for a charge.
    c.push_back(espressione("IIf(IsNull(CodiciIva.ID),0,Round(SpeseDocumenti.Imponibile/100*CodiciIva.AliquotaIva,2))",
                            "Imposta"));
    return select(c, leftJoins("SpeseDocumenti", {{"CodiciIva", "SpeseDocumenti.Iva"}}));
}

// ---- expenses ------------------------------------------------------------------------------------

std::string qrSpese() {
    Colonne c = campi("Spese");
    c += {"Fornitori.DescFornitore", "Fornitori.DescFornitore2"};
    c += elenco("Fornitori", {"Indirizzo", "Cap", "Citta", "Provincia", "Telefono", "Fax", "PartitaIva",
                              "CodiceFiscale"});
    c += {"CondizioniPagamento.DescPagamento", "TipiSpesa.DescTipoSpesa", "ClassificazioniSpese.DescClassificazione"};
    c.push_back(espressione(descSpesa("Spese"), "DescSpesa"));
    // Left unrounded, as the withholding stored on documents is; the grids show it to the cent.
    c.push_back(espressione("Spese.Imponibile*Spese.RitenutaAcconto/100", "TotRitenutaAcconto"));
    c.push_back(espressione(descEstrattoConto("Spese"), "DescEstrattoConto"));
    return select(c, leftJoins("Spese", {{"Fornitori", "Spese.Fornitore"},
                                         {"CondizioniPagamento", "Spese.CondizioniPagamento"},
                                         {"TipiSpesa", "Spese.TipoSpesa"},
                                         {"ClassificazioniSpese", "Spese.Classificazione"}}));
}

std::string qrSpesePagamenti() {
    Colonne c = elenco("Spese", {"ID", "Fornitore", "Numero", "Data", "EscludiEstrattoConto", "Pagata", "ImportoSpesa"});
    c += {"Fornitori.DescFornitore", "Fornitori.DescFornitore2"};
    c.push_back(espressione(descSpesa("Spese"), "DescDocumento"));
    c.push_back(espressione(sommaPagamenti("Spesa", "Spese"), "ImportoPagato"));
    c.push_back(espressione(differenza("Spese.ImportoSpesa", sommaPagamenti("Spesa", "Spese")), "DaPagare"));
    return select(c, leftJoins("Spese", {{"Fornitori", "Spese.Fornitore"}}));
}

std::string qrSpeseScadenze() {
    Colonne c = elenco("Spese", {"ID", "Fornitore", "Numero", "Data", "ImportoSpesa"});
    c.push_back(espressione(descSpesa("Spese"), "DescDocumento"));
    std::string scadenze = somma("Scadenze", "ImportoScadenza", "Spesa", "Spese");
    c.push_back(espressione(scadenze, "ImportoScadenze"));
    c.push_back(espressione(differenza("Spese.ImportoSpesa", scadenze), "Rimanente"));
    return select(c, "Spese");
}

std::string qrMovimentiSpese() {
    Colonne c = campi("MovimentiSpese");
    c += {"CodiciIva.DescIva", "CodiciIva.AliquotaIva"};
    return select(c, leftJoins("MovimentiSpese", {{"CodiciIva", "MovimentiSpese.Iva"}}));
}

// ---- due dates -----------------------------------------------------------------------------------

const std::vector<Join>& joinScadenza() {
    static const std::vector<Join> j{{"Documenti", "Scadenze.Documento"},
                                     {"Spese", "Scadenze.Spesa"},
                                     {"Clienti", "Scadenze.Cliente"},
                                     {"Fornitori", "Scadenze.Fornitore"}};
    return j;
}

std::string scadenzeLato(int incasso, const std::string& pagata, const std::string& aperta) {
    Colonne c = campi("Scadenze");
    c.push_back(espressione(totaleDocumentoOSpesa(), "ImportoTotale"));
    c.push_back(espressione("IIf(Scadenze.Pagata,'" + pagata + "','" + aperta + "')", "Stato"));
    c.push_back(espressione(destinatario(), "Destinatario"));
    c.push_back(espressione(descDocumentoOSpesa(), "DescDocumento"));
    c.push_back("Documenti.Tipo");
    return select(c, leftJoins("Scadenze", joinScadenza()), latoIncasso("Scadenze") + "=" + std::to_string(incasso));
}

std::string qrScadenzePagamenti() {
    Colonne c = campi("Scadenze");
    c.push_back("Documenti.Tipo");
    c.push_back(espressione(sommaPagamenti("Scadenza", "Scadenze"), "ImportoPagato"));
    c.push_back(espressione(differenza("Scadenze.ImportoScadenza", sommaPagamenti("Scadenza", "Scadenze")),
                            "DaPagare"));
    c.push_back(espressione("0", "AgenteDestinatario"));
    c.push_back(espressione(destinatario(), "Destinatario"));
    c.push_back(espressione(descDocumentoOSpesa(), "DescDocumento"));
    return select(c, leftJoins("Scadenze", joinScadenza()));
}

// ---- payments ------------------------------------------------------------------------------------

std::string pagamenti(const std::string& where) {
    Colonne c = campi("Pagamenti");
    c.push_back(espressione(descDocumentoOSpesa(), "DescDocumento"));
    c.push_back(espressione(totaleDocumentoOSpesa(), "ImportoTotale"));
    c += elenco("Scadenze", {"DescScadenza", "DataScadenza", "ImportoScadenza", "Rata", "Rate"});
    c.push_back(espressione(destinatario(), "Destinatario"));
    c.push_back("Documenti.Tipo");
    return select(c, leftJoins("Pagamenti", {{"Documenti", "Pagamenti.Documento"},
                                             {"Spese", "Pagamenti.Spesa"},
                                             {"Scadenze", "Pagamenti.Scadenza"},
                                             {"Clienti", "Pagamenti.Cliente"},
                                             {"Fornitori", "Pagamenti.Fornitore"}}),
                  where);
}

// Per customer, the totals of the documents of one side, for the customer journal. A row stands
// for a customer, so its ID is the customer's, as every query has one.
std::string totaliPerCliente(const std::string& filtroTipo) {
    std::string pagato = sommaPagamenti("Documento", "Documenti");
    Colonne documento{"Documenti.Cliente", espressione(nz("Documenti.ImportoTotale"), "Totale"),
                      espressione(pagato, "Pagato"),
                      espressione(differenza("Documenti.ImportoTotale", pagato), "DaPagare")};
    Colonne c{"D.Cliente", "D.Cliente AS ID", "Sum(D.Totale) AS Totale", "Sum(D.Pagato) AS TotalePagato",
              "Sum(D.DaPagare) AS TotaleDaPagare"};
    return select(c, "(" + select(documento, "Documenti", filtroTipo) + ") AS D") + " GROUP BY D.Cliente";
}

// ---- books, visits, certificates -----------------------------------------------------------------

std::string qrPrimaNota() {
    Colonne c = campi("PrimaNota");
    c.push_back(espressione("IIf(PrimaNota.Tipo=0,PrimaNota.Importo,0)", "Entrate"));
    c.push_back(espressione("IIf(PrimaNota.Tipo=1,PrimaNota.Importo,0)", "Uscite"));
    return select(c, "PrimaNota");
}

// Times are typed as "9.30": the locale's time separator is the point.
std::string qrAssistenze() {
    Colonne c = campi("Assistenze");
    c.push_back("Servizi.DescServizio");
    c.push_back(espressione(nomeCliente(), "Denominazione"));
    c.push_back(espressione("IIf(IsDate(Assistenze.OraInizio) And IsDate(Assistenze.OraFine),"
                            "Round((CDate(Assistenze.OraFine)-CDate(Assistenze.OraInizio))*1440,0),0)",
                            "TempoIntervento"));
    c.push_back(espressione("IIf(Month(Assistenze.Data)<10,'0','') & Month(Assistenze.Data) & '/' & "
                            "Year(Assistenze.Data)",
                            "Mese"));
    return select(c, leftJoins("Assistenze", {{"Servizi", "Assistenze.Servizio"}, {"Clienti", "Assistenze.Cliente"}}));
}

// Fatture on which the customer withheld tax, whose certificate is awaited or received.
std::string qrCertificazioniAcconto() {
    Colonne c = elenco("Documenti", {"ID", "Tipo", "Cliente", "Numero", "Prefisso", "Suffisso", "Data",
                                     "DataScadAcconto", "RitenutaAcconto", "Imponibile", "TotRitenutaAcconto",
                                     "ImportoTotale", "CertAcconto"});
    c.push_back(espressione(nomeCliente(), "Denominazione"));
    c += elenco("Clienti", {"Indirizzo", "Cap", "Citta", "Provincia", "PartitaIva", "CodiceFiscale"});
    c.push_back(espressione(descNum("Documenti"), "DescNum"));
    c.push_back(espressione("IIf(Documenti.CertAcconto,'Ricevuta','Da ricevere')", "DescCertAcconto"));
    return select(c, leftJoins("Documenti", {{"Clienti", "Documenti.Cliente"}}),
                  "Documenti.Tipo=5 And Documenti.RitenutaAcconto<>0");
}

}  // namespace

std::vector<QueryDef> QueryArchivio() {
    return {
        {"qrClienti", qrClienti()},
        {"qrFornitori", qrFornitori()},
        {"qrServizi", qrServizi()},
        {"qrDocumenti", qrDocumenti()},
        {"qrDocumentiDesc", qrDocumentiDesc()},
        {"qrDocumentiIncassi", documentiSaldo(tipoAttivo("Documenti"))},
        {"qrDocumentiPagamenti", documentiSaldo(tipoPassivo("Documenti"))},
        {"qrDocumentiScadenze", qrDocumentiScadenze()},
        {"qrMovimenti", qrMovimenti()},
        {"qrMovimentiEx", qrMovimentiEx()},
        {"qrSpeseDocumenti", qrSpeseDocumenti()},
        {"qrSpese", qrSpese()},
        {"qrSpesePagamenti", qrSpesePagamenti()},
        {"qrSpeseScadenze", qrSpeseScadenze()},
        {"qrMovimentiSpese", qrMovimentiSpese()},
        {"qrScadenzeAttive", scadenzeLato(1, "Incassata", "Da incassare")},
        {"qrScadenzePassive", scadenzeLato(0, "Pagata", "Da pagare")},
        {"qrScadenzePagamenti", qrScadenzePagamenti()},
        {"qrIncassi", pagamenti(latoIncasso("Pagamenti") + "=1")},
        {"qrPagamenti", pagamenti(latoIncasso("Pagamenti") + "=0")},
        {"qrPagamentiIncassi", pagamenti({})},
        {"qrIncPN", totaliPerCliente(tipoAttivo("Documenti"))},
        {"qrPagPN", totaliPerCliente(tipoPassivo("Documenti"))},
        {"qrPrimaNota", qrPrimaNota()},
        {"qrAssistenze", qrAssistenze()},
        {"qrCertificazioniAcconto", qrCertificazioniAcconto()},
    };
}

std::vector<QueryDef> QueryAziende() { return {{"qrUtenti", qrUtenti()}}; }

}  // namespace store::model
