// The tables of the four kinds of file. Text sizes are the lengths of the controls that edit them:
// names and descriptions 100, addresses 100, towns 50, codes as long as the code they hold.
#include <algorithm>

#include "store/errors.h"
#include "store/model/model.h"

namespace store::model {

namespace {

Campo id() { return {"ID", FieldType::Long, 0, false}; }
Campo legame(const std::string& nome) { return {nome, FieldType::Long, 0, true}; }
Campo lungo(const std::string& nome) { return {nome, FieldType::Long, 0, false}; }
Campo numero(const std::string& nome) { return {nome, FieldType::Double, 0, false}; }
Campo data(const std::string& nome) { return {nome, FieldType::Date, 0, false}; }
Campo sino(const std::string& nome) { return {nome, FieldType::Boolean, 0, false}; }
Campo memo(const std::string& nome) { return {nome, FieldType::Memo, 0, false}; }
Campo testo(const std::string& nome, int dimensione) { return {nome, FieldType::Text, dimensione, false}; }

constexpr int kDescrizione = 100;
constexpr int kPercorso = 255;

// Address and contacts shared by customers, suppliers and companies.
void aggiungiIndirizzo(std::vector<Campo>& campi) {
    campi.push_back(testo("Indirizzo", kDescrizione));
    campi.push_back(testo("Cap", 10));
    campi.push_back(testo("Citta", 50));
    campi.push_back(testo("Provincia", 30));
}

void aggiungiBanca(std::vector<Campo>& campi) {
    campi.push_back(testo("Banca", kDescrizione));
    campi.push_back(testo("ABI", 5));
    campi.push_back(testo("CAB", 5));
    campi.push_back(testo("CIN", 2));
    campi.push_back(testo("NumeroConto", 30));
}

// Customers and suppliers differ only in the name fields and in the customer's defaults.
Tabella anagrafica(const std::string& tabella, const std::string& desc, bool cliente) {
    std::vector<Campo> c{id(), testo(desc, kDescrizione), testo(desc + "2", kDescrizione)};
    aggiungiIndirizzo(c);
    c.push_back(testo("PartitaIva", 20));
    c.push_back(testo("CodiceFiscale", 20));
    for (const char* contatto : {"Telefono", "Cellulare", "Fax"}) c.push_back(testo(contatto, 30));
    c.push_back(testo("mail", kDescrizione));
    c.push_back(testo("web", kDescrizione));
    if (cliente) {
        c.push_back(legame("IvaApplicata"));
        c.push_back(legame("CondizioniPagamento"));
        c.push_back(numero("Sconto1"));
        c.push_back(numero("Sconto2"));
    }
    aggiungiBanca(c);
    c.push_back(memo("Note"));
    return {tabella, c, {}};
}

Tabella condizioniPagamento() {
    std::vector<Campo> c{id(), testo("DescPagamento", kDescrizione), lungo("Rate")};
    for (int i = 1; i <= 12; ++i) c.push_back(lungo("Rata" + std::to_string(i)));
    c.push_back(sino("FineMese"));
    return {"CondizioniPagamento", c, {}};
}

Tabella documenti() {
    return {"Documenti",
            {id(), lungo("Tipo"), lungo("Numero"), testo("Prefisso", 20), testo("Suffisso", 20), data("Data"),
             data("DataRegistrazione"), legame("Cliente"), legame("Fornitore"), legame("CondizioniPagamento"),
             numero("Sconto1"), numero("Sconto2"), numero("Sconto3"), numero("Sconto4"), numero("RitenutaAcconto"),
             numero("Maggiorazione"), lungo("Colli"), memo("Note"), data("DataScadAcconto"), sino("CertAcconto"),
             data("DataDal"), data("DataAl"), sino("EscludiEstrattoConto"), sino("Pagato"), numero("Imponibile"),
             numero("TotIva"), numero("TotNetto"), numero("TotSpese"), numero("TotRitenutaAcconto"),
             numero("ImportoTotale")},
            {"Tipo", "Data"},
            // The register of a kind lists its documents by date, or by customer and then by date:
            // either way SQLite walks an index and gives the first rows without sorting the kind.
            // The header editor's prefixes, suffixes and next number of a kind come from an index
            // too, never from the kind's rows.
            {{"TipoData", {"Tipo", "Data"}},
             {"TipoClienteData", {"Tipo", "Cliente", "Data"}},
             {"TipoPrefissoSuffissoNumero", {"Tipo", "Prefisso", "Suffisso", "Numero"}},
             {"TipoSuffisso", {"Tipo", "Suffisso"}}}};
}

Tabella spese() {
    return {"Spese",
            {id(), testo("Numero", 20), data("Data"), legame("Fornitore"), legame("TipoSpesa"),
             legame("Classificazione"), legame("CondizioniPagamento"), numero("RitenutaAcconto"), memo("Note"),
             testo("File", kPercorso), sino("EscludiEstrattoConto"), sino("Pagata"), numero("Imponibile"),
             numero("TotIva"), numero("ImportoSpesa")},
            {"Data"},
            // The register reads the expenses of a class and kind at a time, by number and date.
            {{"ClassificazioneTipoNumero", {"Classificazione", "TipoSpesa", "Numero", "Data"}}}};
}

std::vector<Tabella> archivio() {
    return {
        anagrafica("Clienti", "DescCliente", true),
        anagrafica("Fornitori", "DescFornitore", false),
        {"Servizi",
         {id(), testo("DescServizio", kDescrizione), testo("CodiceInterno", 30), legame("CodiceIva"),
          numero("CostoUnitario"), sino("NonStampare"), numero("Sconto1")},
         {}},
        {"CodiciIva", {id(), testo("DescIva", 30), numero("AliquotaIva")}, {}},
        condizioniPagamento(),
        {"TipiSpesa", {id(), testo("DescTipoSpesa", kDescrizione)}, {}},
        {"ClassificazioniSpese", {id(), testo("DescClassificazione", kDescrizione)}, {}},
        documenti(),
        {"Movimenti",
         {id(), legame("Documento"), legame("Servizio"), testo("DescMovimento", 255), testo("Riferimenti", kDescrizione),
          numero("Quantita"), numero("PrezzoUnitario"), numero("Sconto1"), numero("Sconto2"), numero("Importo"),
          legame("Iva")},
         {}},
        {"SpeseDocumenti",
         {id(), legame("Documento"), testo("DescSpesa", kDescrizione), numero("Imponibile"), legame("Iva")},
         {}},
        spese(),
        {"MovimentiSpese",
         {id(), legame("Spesa"), testo("DescMovimento", 255), numero("Importo"), legame("Iva")},
         {}},
        {"Scadenze",
         {id(), legame("Documento"), legame("Spesa"), legame("Cliente"), legame("Fornitore"),
          testo("DescScadenza", kDescrizione), data("DataScadenza"), data("DataAvviso"), numero("ImportoScadenza"),
          lungo("Rata"), lungo("Rate"), sino("Pagata")},
         {"DataScadenza", "DataAvviso"}},
        {"Pagamenti",
         {id(), legame("Documento"), legame("Spesa"), legame("Scadenza"), legame("Cliente"), legame("Fornitore"),
          testo("DescPagamento", kDescrizione), data("DataPagamento"), numero("ImportoPagamento"),
          testo("NumeroAssegno", 30), testo("TipoPagamento", 50), testo("CC", 50)},
         {"DataPagamento"},
         // A statement reads each document's (or expense's) payments in date order, within the
         // period: a range of one of these, without sorting.
         {{"DocumentoDataPagamento", {"Documento", "DataPagamento"}},
          {"SpesaDataPagamento", {"Spesa", "DataPagamento"}}}},
        {"PrimaNota",
         {id(), data("Data"), testo("Descrizione", 255), numero("Importo"), lungo("Tipo"), lungo("Destinazione"),
          legame("Pagamento"), testo("TipoPagamento", 50), lungo("Numero"), testo("CC", 50)},
         {"Data"},
         // A destination's month is a range of this index, and the balance before it is summed from
         // the index alone, without reading the rows.
         {{"DestinazioneData", {"Destinazione", "Data", "Tipo", "Importo"}}}},
        {"Assistenze",
         {id(), legame("Cliente"), legame("Servizio"), data("Data"), testo("OraInizio", 10), testo("OraFine", 10),
          numero("Km"), memo("Note"), sino("Fattura")},
         {}},
        {"EsportazioneCampi",
         {id(), testo("Sezione", 50), testo("Campo", 50), lungo("Posizione"), sino("Includi")},
         {}},
        {"Note", {id(), testo("Descrizione", kDescrizione), sino("Predefinita")}, {}},
        {"NoteCampi", {id(), legame("Note"), testo("NomeCampo", 50), lungo("Dimensione")}, {}},
        {"NoteDettagli", {id(), legame("Note"), legame("Campo"), lungo("Record"), memo("Valore")}, {"Record"}},
    };
}

std::vector<Tabella> aziende() {
    std::vector<Campo> azienda{id(), testo("Denominazione", kDescrizione)};
    aggiungiIndirizzo(azienda);
    azienda.push_back(testo("PartitaIva", 20));
    azienda.push_back(testo("CodiceFiscale", 20));
    azienda.push_back(testo("Telefono", 30));
    azienda.push_back(testo("Fax", 30));
    return {
        {"Aziende", azienda, {}},
        {"Esercizi",
         {id(), legame("Azienda"), testo("Nome", kDescrizione), data("Dal"), data("Al"), testo("File", kPercorso),
          data("DataAggiornamento")},
         {"File"}},
        {"Utenti",
         {id(), legame("Azienda"), testo("Username", 50), testo("Password", 50), testo("Accessi", 100)},
         {}},
        {"FormReport",
         {id(), legame("Azienda"), testo("Sezione", 50), testo("Report", kPercorso), sino("Predefinito")},
         {}},
    };
}

std::vector<Tabella> temp() {
    return {
        {"Estratto",
         {id(), lungo("Tipo"), data("Data"), testo("Descrizione", 255), numero("Dare"), numero("Avere"),
          numero("Saldo"), legame("Fornitore"), testo("DescFornitore", 200)},
         {}},
        {"PrimaNota",
         {id(), testo("Descrizione", 255), testo("Destinatario", 255), data("Data"), numero("EntrateFuoriCassa"),
          numero("UsciteFuoriCassa"), numero("EntrateInCassa"), numero("UsciteInCassa"), numero("SaldoFuoriCassa"),
          numero("SaldoInCassa")},
         {}},
        {"Note", {id(), lungo("Record")}, {}},
    };
}

std::vector<Tabella> utilita() {
    return {{"Comuni", {id(), testo("Comune", kDescrizione), testo("Cap", 10), testo("Provincia", 30)}, {"Comune"}}};
}

// A new row holds 0 in its numbers, links and yes/no fields until the program writes them: an
// Insert that leaves out a field (PrimaNota.Numero, a link not yet known) stores 0, not Null.
bool haZeroPredefinito(FieldType tipo) {
    return tipo == FieldType::Long || tipo == FieldType::Double || tipo == FieldType::Boolean;
}

}  // namespace

TableDef Tabella::definizione() const {
    TableDef def;
    def.Name = nome;
    for (const Campo& c : campi) {
        FieldDef f = TableDef::CreateField(c.nome, c.tipo, c.dimensione);
        f.AllowZeroLength = true;
        if (c.nome != "ID" && haZeroPredefinito(c.tipo)) f.DefaultValue = "0";
        def.Fields.push_back(f);
    }
    def.Indexes.push_back(TableDef::CreateIndex("PrimaryKey", {"ID"}, true, true));
    for (const Campo& c : campi)
        if (c.legame) def.Indexes.push_back(TableDef::CreateIndex(c.nome, {c.nome}));
    for (const std::string& campo : indiciAggiuntivi)
        def.Indexes.push_back(TableDef::CreateIndex(campo, {campo}));
    for (const IndiceComposto& i : indiciComposti) def.Indexes.push_back(TableDef::CreateIndex(i.nome, i.campi));
    return def;
}

const std::vector<Tabella>& TabelleArchivio() {
    static const std::vector<Tabella> tabelle = archivio();
    return tabelle;
}

const std::vector<Tabella>& TabelleAziende() {
    static const std::vector<Tabella> tabelle = aziende();
    return tabelle;
}

const std::vector<Tabella>& TabelleTemp() {
    static const std::vector<Tabella> tabelle = temp();
    return tabelle;
}

const std::vector<Tabella>& TabelleUtilita() {
    static const std::vector<Tabella> tabelle = utilita();
    return tabelle;
}

const Tabella& TabellaModello(const std::string& nome) {
    for (const auto* elenco : {&TabelleArchivio(), &TabelleAziende()}) {
        auto it = std::find_if(elenco->begin(), elenco->end(), [&](const Tabella& t) { return t.nome == nome; });
        if (it != elenco->end()) return *it;
    }
    raise(err::TabellaOQueryNonTrovata, nome);
}

void CreaTabelle(Database& db, const std::vector<Tabella>& tabelle) {
    for (const Tabella& t : tabelle) db.AppendTableDef(t.definizione());
}

void CreaQuery(Database& db, const std::vector<QueryDef>& query) {
    for (const QueryDef& q : query) db.CreateQueryDef(q);
}

void CreaArchivio(Database& db) {
    CreaTabelle(db, TabelleArchivio());
    CreaQuery(db, QueryArchivio());
}

void CreaTemp(Database& db) { CreaTabelle(db, TabelleTemp()); }

}  // namespace store::model
