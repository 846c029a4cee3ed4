#include "core/pannello.h"

#include <map>

#include "core/avvio.h"
#include "core/dialogs.h"
#include "core/diritti.h"
#include "core/impostazioni.h"
#include "core/registro_schermi.h"
#include "core/session.h"
#include "store/convert.h"

namespace core {

namespace {

// Screens that a later step brings; their commands show but stay off until registered.
const std::vector<ComandoPannello> kMenu = {
    {"mServizi", "mAnagrafiche", "Servizi", "frmServizi", NessunDiritto, -1, "applications-other", ""},
    {"mClienti", "mAnagrafiche", "Clienti", "frmClienti", NessunDiritto, -1, "system-users", ""},
    {"mFornitori", "mAnagrafiche", "Fornitori", "frmFornitori", NessunDiritto, -1, "system-users", ""},
    {"mNote", "mAnagrafiche", "Note", "frmNote", NoteUtente, -1, "accessories-text-editor", ""},
    {"mClassificazioniSpese", "mAnagrafiche", "Classificazioni Spese", "frmClassificazioniSpese", NessunDiritto, -1,
     "format-indent-more", ""},
    {"mCodiciIva", "mAnagrafiche", "Codici Iva", "frmCodiciIva", NessunDiritto, -1, "accessories-calculator", ""},
    {"mCondizioniPagamento", "mAnagrafiche", "Condizioni di Pagamento", "frmCondizioniPagamento", NessunDiritto, -1,
     "x-office-calendar", ""},
    {"mTipiSpese", "mAnagrafiche", "Tipi Spese", "frmTipiSpesa", NessunDiritto, -1, "format-justify-fill", ""},
    {"mUtenti", "mAnagrafiche", "Utenti", "frmUtenti", UtentiVedere, -1, "system-users", ""},
    {"mnuEsci", "mAnagrafiche", "Esci", "", NessunDiritto, -1, "system-log-out", ""},
    {"mPreventivi", "mContabilita", "Preventivi", "frmDocumenti", DocumentiVedere, 7, "x-office-document", ""},
    {"mFatture", "mContabilita", "Fatture", "frmDocumenti", DocumentiVedere, 5, "x-office-document", ""},
    {"mSpese", "mContabilita", "Spese", "frmSpese", SpeseVedere, -1, "mail-send-receive", ""},
    {"mNoteDebito", "mContabilita", "Note di Debito", "frmDocumenti", DocumentiVedere, 6, "edit-undo", ""},
    {"mNoteCreditoRicevute", "mContabilita", "Note di Credito Ricevute", "frmDocumenti", DocumentiVedere, 9, "edit-redo", ""},
    {"mCertificazioniAcconto", "mContabilita", "Certificazioni ritenute d'acconto", "frmCertificazioniAcconto", NessunDiritto,
     -1, "document-properties", ""},
    {"mPagamenti", "mContabilita", "Pagamenti", "frmPagamenti", PagamentiVedere, 0, "go-previous", ""},
    {"mIncassi", "mContabilita", "Incassi", "frmPagamenti", IncassiVedere, 1, "go-next", ""},
    {"mScadenzeAttive", "mScadenze", "Attive", "frmScadenze", ScadenzeVedere, 0, "appointment-new", ""},
    {"mScadenzePassive", "mScadenze", "Passive", "frmScadenze", ScadenzeVedere, 1, "appointment-new", ""},
    {"mPrimaNota", "mContabilita", "Prima Nota (Ordinato per data)", "frmPrimaNota", PrimaNotaVedere, 0, "x-office-spreadsheet", ""},
    {"mPrimaNotaC", "mContabilita", "Prima Nota (Clienti)", "frmPrimaNota", PrimaNotaVedere, 1, "x-office-spreadsheet", ""},
    {"mPrimaNotaF", "mContabilita", "Prima Nota (Fornitori)", "frmPrimaNota", PrimaNotaVedere, 2, "x-office-spreadsheet", ""},
    {"mPrimaNota2", "mContabilita", "Partita doppia (Ordinato per destinatario)", "frmPrimaNota2", PrimaNotaVedere, -1,
     "document-print", ""},
    {"mBilancio", "mContabilita", "Bilancio", "frmBilancio", PrimaNotaVedere, -1, "x-office-presentation", ""},
    {"mEstrattoGeneraleFornitori", "mContabilita", "Estratto conto fornitori", "frmEstrattoContoGenerale", NessunDiritto, -1,
     "document-print-preview", ""},
    {"mAziende", "mStrumenti", "Aziende Gestite", "frmAziende", NessunDiritto, -1, "go-home", ""},
    {"mChiusuraEsercizio", "mStrumenti", "Chiusura Esercizio", "", NessunDiritto, -1, "process-stop", ""},
    {"mNuovoEsercizio", "mStrumenti", "Nuovo Esercizio", "frmNuovoEsercizio", NessunDiritto, -1, "folder-new", ""},
    {"mModificaPeriodo", "mStrumenti", "Modifica periodo esercizio", "", NessunDiritto, -1, "preferences-system", ""},
    {"mBackup", "mStrumenti", "Backup dati", "frmBackup", NessunDiritto, -1, "media-floppy", ""},
    {"mImportaBackup", "mStrumenti", "Importa dati di backup", "frmImportaBackup", NessunDiritto, -1, "document-revert", ""},
    {"mEsportazioneElenchi", "mStrumenti", "Esportazione elenchi", "frmEsportaElenchi", NessunDiritto, -1, "document-save-as", ""},
    {"mCalcolatrice", "mStrumenti", "Calcolatrice", "frmCalcolatrice", NessunDiritto, -1, "accessories-calculator", ""},
    {"mComuni", "mStrumenti", "Comuni", "frmComuni", NessunDiritto, -1, "mark-location", ""},
    {"mGuida", "mInfo", "Guida", "", NessunDiritto, -1, "help-browser", ""},
};

// The one list entry with no menu of its own.
const ComandoPannello kEsportaFiles = {"mEsportaFiles", "", "Files Fatture/Clienti", "frmEsportaFatture", NessunDiritto, -1,
                                       "document-save-as", ""};

const std::vector<SezioneLista> kListBar = {
    {"Contabilità", "s13",
     {{"mPreventivi", "", ""},
      {"mFatture", "", ""},
      {"mSpese", "", ""},
      {"mNoteDebito", "Note di credito emesse", ""},
      {"mNoteCreditoRicevute", "Note di credito ricevute", ""},
      {"mCertificazioniAcconto", "Certificazioni Rit. Acconto", ""},
      {"mPagamenti", "", ""},
      {"mIncassi", "", ""},
      {"mScadenzeAttive", "Scadenze Attive", "s34"},
      {"mScadenzePassive", "Scadenze Passive", "s35"},
      {"mEsportaFiles", "Files Fatture/Clienti", ""},
      {"mEstrattoGeneraleFornitori", "Estratto Conto Fornitori", ""}}},
    {"Anagrafiche", "s4",
     {{"mServizi", "", ""},
      {"mClienti", "", ""},
      {"mFornitori", "", ""},
      {"mNote", "", ""},
      {"mCodiciIva", "", ""},
      {"mCondizioniPagamento", "", ""},
      {"mTipiSpese", "", ""},
      {"mUtenti", "", ""}}},
};

const std::vector<ComandoPannello> kRapidi = {
    {"mFAV", "", "Nuova fattura", "frmDocumentiEdita", DocumentiModificare, 5, "document-new", "s37", "frmMovimentiEdita"},
    {"mSpesa", "", "Nuova spesa", "frmSpeseEdita", SpeseModificare, -1, "document-new", "s38", "frmSpeseMovEdita"},
    {"mServizi", "", "Nuovo servizio", "frmServiziEdita", NessunDiritto, -1, "list-add", "s39"},
    {"mClienti", "", "Nuovo cliente", "frmClientiEdita", NessunDiritto, -1, "list-add", "s40"},
    {"mFornitori", "", "Nuovo fornitore", "frmFornitoriEdita", NessunDiritto, -1, "list-add", "s41"},
    {"mCodiciIva", "", "Nuovo codice Iva", "frmCodiciIvaEdita", NessunDiritto, -1, "list-add", "s42"},
    {"mCondizioniPagamento", "", "Nuova condizione di pagamento", "frmCondizioniPagamentoEdita", NessunDiritto, -1,
     "list-add", "s43"},
    {"mTipiSpesa", "", "Nuovo tipo spesa", "frmTipiSpesaEdita", NessunDiritto, -1, "list-add", "s44"},
    {"mUtenti", "", "Nuovo utente", "frmUtentiEdita", UtentiModificare, -1, "list-add", "s45"},
    {"mPagamenti", "", "Nuovo pagamento", "frmPagamentiSpeseEdita", PagamentiModificare, -1, "go-previous", "s46"},
    {"mIncassi", "", "Nuovo incasso", "frmPagamentiEdita", IncassiModificare, -1, "go-next", "s47"},
    {"mScadenzeAttive", "", "Nuova scadenza attiva", "frmScadenzeEdita", ScadenzeModificare, 0, "appointment-new", "s48"},
    {"mScadenzePassive", "", "Nuova scadenza passiva", "frmScadenzeEdita", ScadenzeModificare, 1, "appointment-new", "s49"},
};

std::map<std::string, int>& ModiSchermi() {
    static std::map<std::string, int> modi;
    return modi;
}

std::vector<VoceCombo> LeggiCombo(const std::string& sql, const char* campoTesto) {
    std::vector<VoceCombo> voci;
    auto rs = session().dbAziende->OpenRecordset(sql);
    for (; !rs->Eof(); rs->MoveNext())
        voci.push_back({static_cast<long>(store::CLng(rs->get("ID"))), store::ConcatText(rs->get(campoTesto))});
    return voci;
}

bool QualcheRiga(const std::string& sql) { return !session().dbArchivio->OpenRecordset(sql)->Eof(); }

}  // namespace

const std::vector<ComandoPannello>& ComandiMenu() { return kMenu; }
const std::vector<SezioneLista>& SezioniListBar() { return kListBar; }
const std::vector<ComandoPannello>& ComandiRapidi() { return kRapidi; }

const ComandoPannello* CercaComando(const std::string& nome) {
    if (nome == kEsportaFiles.nome) return &kEsportaFiles;
    if (nome == "mTipiSpesa") return CercaComando("mTipiSpese");  // the list names the menu so
    for (const auto& c : kMenu)
        if (c.nome == nome) return &c;
    return nullptr;
}

void ImpostaModoSchermo(const std::string& schermo, int modo) { ModiSchermi()[schermo] = modo; }

int ModoSchermo(const std::string& schermo) {
    auto it = ModiSchermi().find(schermo);
    return it == ModiSchermi().end() ? 0 : it->second;
}

bool ComandoDisponibile(const ComandoPannello& c) { return !c.schermo.empty() && schermoRegistrato(c.schermo); }

bool PrivilegioConcesso(int posizione) {
    if (posizione == 0 || HaPrivilegio(posizione)) return true;
    MsgBox(session().MsgNegato, vbExclamation);
    return false;
}

bool EseguiComando(const ComandoPannello& c) {
    if (!PrivilegioConcesso(c.privilegio)) return false;
    ChiudiFormAperta(c.schermo);
    if (c.modo >= 0) ImpostaModoSchermo(c.schermo, c.modo);
    MostraPannello(c.schermo);
    return true;
}

std::vector<VoceCombo> ElencoAziende() {
    return LeggiCombo("Select * from Aziende order by Denominazione", "Denominazione");
}

std::vector<VoceCombo> ElencoEsercizi(long azienda) {
    return LeggiCombo("Select * from Esercizi where Azienda=" + std::to_string(azienda) + " order by Dal", "Nome");
}

int PosizioneDi(const std::vector<VoceCombo>& voci, long id) {
    for (std::size_t i = 0; i < voci.size(); ++i)
        if (voci[i].id == id) return static_cast<int>(i);
    return -1;
}

int ScegliEsercizioCorrente(const std::vector<VoceCombo>& esercizi) {
    Session& s = session();
    int pos = PosizioneDi(esercizi, s.IDEsercizio);
    if (pos >= 0 || esercizi.empty()) return pos;
    pos = static_cast<int>(esercizi.size()) - 1;
    s.IDEsercizio = esercizi[pos].id;
    ScriviIni("Archivio", "ID", std::to_string(s.IDEsercizio));
    return pos;
}

void ImpostaAzienda(long idAzienda) {
    Session& s = session();
    s.IDAzienda = idAzienda;
    s.IDEsercizio = 0;
    if (s.dbArchivio) s.dbArchivio->Close();
    s.dbArchivio.reset();
}

void ApriEsercizio(long idEsercizio) {
    Session& s = session();
    auto rs = s.dbAziende->OpenRecordset("Select * from Esercizi where ID=" + std::to_string(idEsercizio));
    const std::string file = store::ConcatText(rs->get("File"));
    rs->Close();
    if (!ArchivioAggiornato(file)) MostraModale("frmAggiorna");
    s.dbArchivio = store::Workspace::Default().OpenDatabase(file);
    ScriviIni("Archivio", "ID", std::to_string(idEsercizio));
}

std::string ComandoPannello::didascalia() const { return Didascalia(chiaveTesto.empty() ? titolo : chiaveTesto); }

DescrizioneEsercizio EsercizioCorrente() {
    Session& s = session();
    DescrizioneEsercizio d;
    if (!s.dbArchivio || !s.dbAziende) return d;
    auto rs = s.dbAziende->OpenRecordset("Select * from Esercizi where ID=" + std::to_string(s.IDEsercizio));
    if (rs->Eof()) return d;
    const store::Value dal = rs->get("Dal");
    const store::Value al = rs->get("Al");
    d.dal = dal.isNull() ? "" : store::ShortDate(store::CDate(dal));
    d.al = al.isNull() ? "aperto" : store::ShortDate(store::CDate(al));
    d.file = s.dbArchivio->Name();
    return d;
}

std::vector<Avviso> AvvisiDiOggi() {
    std::vector<Avviso> avvisi;
    if (!session().dbArchivio) return avvisi;
    const std::string filtro = " where DateValue(DataAvviso)=DateValue(Now) and Pagata=False";
    if (QualcheRiga("Select * from qrScadenzeAttive" + filtro)) avvisi.push_back({"ScadenzeAttive", Testo("s50"), 0});
    if (QualcheRiga("Select * from qrScadenzePassive" + filtro))
        avvisi.push_back({"ScadenzePassive", Testo("s51"), 1});
    return avvisi;
}

}  // namespace core
