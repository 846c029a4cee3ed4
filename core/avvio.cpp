#include "core/avvio.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <ctime>

#include "core/backup.h"
#include "core/dialogs.h"
#include "core/file.h"
#include "core/impostazioni.h"
#include "core/registro_schermi.h"
#include "core/session.h"
#include "core/varie.h"
#include "store/convert.h"
#include "store/dao.h"

namespace core {

namespace {

std::optional<std::string>& eseguibileFissato() {
    static std::optional<std::string> percorso;
    return percorso;
}

long long InSecondi(double serial) { return std::llround(serial * 86400.0); }

bool Aperto(const store::DatabasePtr& db) { return db && db->isOpen(); }

store::DatabasePtr Apri(const std::string& percorso) { return store::Workspace::Default().OpenDatabase(percorso); }

// ---- where the program runs, and how many copies ---------------------------------------------

bool CartellaDiRete(const std::string& cartella) {
    const std::string inizio = cartella.substr(0, 2);
    return inizio == "\\\\" || inizio == "//";
}

// One process per program folder: an advisory lock on a file in the folder, held until the process
// ends. The lock is per open file, so a second process, or a second open in this one, is refused.
// Running Main again in the same process keeps the lock it already has.
struct BloccoIstanza {
    std::string cartella;
    int fd = -1;
};

BloccoIstanza& blocco() {
    static BloccoIstanza b;
    return b;
}

bool IstanzaUnica(const std::string& cartella) {
    auto& b = blocco();
    if (b.fd >= 0 && b.cartella == cartella) return true;
    const int fd = ::open(PercorsoProgramma("brevano.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0) return true;  // a folder we cannot write to: the files opened next tell what is wrong
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        ::close(fd);
        return false;
    }
    if (b.fd >= 0) ::close(b.fd);
    b = {cartella, fd};
    return true;
}

// ---- master file, Azienda, Esercizio ------------------------------------------------------------

void ApriArchivioAziende() {
    const std::string cartellaDati = LeggiIni("Azienda", "PATH");
    if (cartellaDati.empty()) return;
    CompletaRipristinoInterrotto(cartellaDati);
    session().dbAziende = Apri(cartellaDati + "/Aziende.mdb");
    SegnaCartellaInUso(cartellaDati);
}

long IdDaImpostazioni(const char* sezione) {
    const std::string testo = LeggiIni(sezione, "ID");
    return testo.empty() ? 0 : store::CLng(store::Value::Text(testo));
}

void LeggiIdDaImpostazioni() {
    session().IDAzienda = IdDaImpostazioni("Azienda");
    session().IDEsercizio = IdDaImpostazioni("Archivio");
}

// The archive file of the Esercizio in the settings. A stale id is cleared and frmConfigurazione
// shown; the statement keeps the old id, so only a row that has come back under it passes, and
// otherwise the choice just made serves at the next start.
std::optional<std::string> FileEsercizio() {
    auto& s = session();
    const std::string sql = "Select * from Esercizi where ID=" + std::to_string(s.IDEsercizio);
    auto rs = s.dbAziende->OpenRecordset(sql);
    if (rs->Eof()) {
        s.IDEsercizio = 0;
        ScriviIni("Archivio", "ID", "0");
        MostraModale("frmConfigurazione");
        if (!Aperto(s.dbAziende)) return std::nullopt;
        rs = s.dbAziende->OpenRecordset(sql);
        if (rs->Eof()) return std::nullopt;
    }
    return store::CStr(rs->get("File"));
}

// ---- the other databases ------------------------------------------------------------------------

// temp.mdb is rebuilt at each start by compacting it into tempCompact.mdb. A tempCompact.mdb left
// by a crash makes the compaction fail, and the start stops with that error.
void RinnovaTemp() {
    auto& s = session();
    if (s.dbTemp) s.dbTemp->Close();  // on a second pass the old handle would point at a deleted file
    const std::string temp = PercorsoProgramma("temp.mdb");
    CompattaTramite(temp, "tempCompact.mdb");
    s.dbTemp = Apri(temp);
}

// ---- the user and the journal -------------------------------------------------------------------

void IdentificaUtente() {
    auto& s = session();
    auto rs = s.dbAziende->OpenRecordset("Select ID from Utenti where azienda=" + std::to_string(s.IDAzienda));
    if (!rs->Eof()) {
        MostraModale("frmLogin");
        return;
    }
    // Nobody to log in: every right, and Italian again at every start.
    s.Privilegi = "111111111111111";
    s.NomeUtente = "Amministratore";
    RipristinaLingua();
}

// An archive with payments but no journal row predates the journal.
bool ArchivioSenzaPrimaNota() {
    auto& archivio = *session().dbArchivio;
    auto pagamenti = archivio.OpenRecordset("Select Top 1 * from Pagamenti");
    auto primaNota = archivio.OpenRecordset("Select Top 1 * from PrimaNota");
    return primaNota->Eof() && !pagamenti->Eof();
}

// Where the program runs and whether another copy is already running there.
bool PuoPartire(const std::string& cartella) {
    if (CartellaDiRete(cartella)) {
        MsgBox(Testo("s324"), vbCritical);
        return false;
    }
    return IstanzaUnica(cartella);
}

// The archive file of the Azienda and Esercizio in the settings, asking for them on the first run;
// nullopt when the start-up is to end without a word.
std::optional<std::string> ArchivioDaAprire() {
    auto& s = session();
    ApriArchivioAziende();
    LeggiIdDaImpostazioni();
    if (s.IDAzienda == 0) MostraModale("frmConfigurazione");
    if (!Aperto(s.dbAziende)) return std::nullopt;
    LeggiIdDaImpostazioni();
    if (s.IDEsercizio == 0) return std::nullopt;
    return FileEsercizio();
}

void ApriDatabases(const std::string& archivio) {
    auto& s = session();
    if (!ArchivioAggiornato(archivio)) MostraModale("frmAggiorna");
    s.dbArchivio = Apri(archivio);
    RinnovaTemp();
    s.dbUtilita = Apri(PercorsoProgramma("Utilità.mdb"));
}

EsitoAvvio Avvia() {
    auto& s = session();
    if (!PuoPartire(s.CartellaProgramma)) return EsitoAvvio::Termina;
    // The common controls and the theme manifest belong to another desktop platform and have no
    // counterpart under Qt: the rest keeps its order without them.
    // The workspace is store::Workspace::Default(), made on first use.
    const auto archivio = ArchivioDaAprire();
    if (!archivio) return EsitoAvvio::Termina;
    ApriDatabases(*archivio);
    IdentificaUtente();
    if (s.Privilegi.empty()) return EsitoAvvio::Termina;
    if (ArchivioSenzaPrimaNota()) MostraModale("frmAggiornaPrimaNota");
    MostraPannello("frmMain");
    s.MsgNegato = Testo("s55");
    FineCaricamento();
    return EsitoAvvio::Aperto;
}

}  // namespace

EsitoAvvio Main() {
    try {
        return Avvia();
    } catch (const TerminaProgramma&) {
        return EsitoAvvio::Termina;
    }
}

bool ArchivioAggiornato(const std::string& file) {
    auto& s = session();
    if (!Aperto(s.dbAziende)) store::raise(91, "(Aziende.mdb non aperto)");
    auto rs = s.dbAziende->OpenRecordset("Select * from Esercizi where File='" + Apici(file) + "'");
    if (rs->Eof()) {
        MsgBox(Testo("s325"), vbExclamation);
        throw TerminaProgramma();
    }
    const store::Value data = rs->get("DataAggiornamento");
    const double aggiornamento = store::CDate(data.isNull() ? store::Value::Text("0.00.00") : data);
    return InSecondi(aggiornamento) == InSecondi(DataEseguibile());
}

double DataEseguibile() {
    const std::string percorso = eseguibileFissato().value_or("/proc/self/exe");
    struct stat info {};
    if (::stat(percorso.c_str(), &info) != 0) store::raise(53, percorso);
    std::tm locale{};
    localtime_r(&info.st_mtime, &locale);
    const double giorno = store::DateSerial(locale.tm_year + 1900, locale.tm_mon + 1, locale.tm_mday);
    return giorno + (locale.tm_hour * 3600 + locale.tm_min * 60 + locale.tm_sec) / 86400.0;
}

void fissaEseguibile(std::optional<std::string> percorso) { eseguibileFissato() = std::move(percorso); }

}  // namespace core
