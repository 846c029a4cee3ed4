#include "core/backup.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include "core/ini.h"
#include "core/session.h"
#include "store/convert.h"
#include "store/dao.h"
#include "store/errors.h"

namespace fs = std::filesystem;

namespace core {

namespace {

const char* const kMaster = "Aziende.mdb";
const char* const kNonBackup = "La cartella selezionata non contiene dati di backup!";
const char* const kParziale = ".parziale";
// Beside the copies: which company's archives the backup holds.
const char* const kContenuto = "Backup.ini";
// In the data folder while a restore puts its copies in place: the names still to be moved.
const char* const kDaMettereAPosto = ".ripristino";
const char* const kSuffissoRipristino = ".ripristino";

std::string DueCifre(int n) {
    char testo[16];
    std::snprintf(testo, sizeof testo, "%02d", n);
    return testo;
}

std::string Mega(std::uintmax_t byte) { return std::to_string((byte + (1 << 20) - 1) >> 20); }

void Mostra(const AvanzamentoCopia& avanzamento, const std::string& titolo, int percento) {
    if (avanzamento) avanzamento(titolo, percento);
}

std::uintmax_t Dimensione(const fs::path& p) {
    std::error_code ec;
    if (fs::is_regular_file(p, ec)) return fs::file_size(p, ec);
    std::uintmax_t totale = 0;
    if (fs::is_directory(p, ec))
        for (const auto& voce : fs::recursive_directory_iterator(p, ec))
            if (voce.is_regular_file(ec)) totale += voce.file_size(ec);
    return totale;
}

// The entries of a folder whose names begin and end so, removed with all they hold.
void RimuoviNascosti(const fs::path& dove, const std::string& inizio, const std::string& fine) {
    std::error_code ec;
    std::vector<fs::path> trovati;
    for (const auto& voce : fs::directory_iterator(dove, ec)) {
        const std::string nome = voce.path().filename().string();
        if (nome.size() > inizio.size() + fine.size() && nome.starts_with(inizio) && nome.ends_with(fine))
            trovati.push_back(voce.path());
    }
    for (const auto& p : trovati) fs::remove_all(p, ec);
}

// The remains of backups cut short in this folder: hidden folders that never got a backup's name.
void RimuoviAvanzi(const fs::path& dove) { RimuoviNascosti(dove, ".Backup ", kParziale); }

// The archives of the current company, as their rows name them.
struct Archivio {
    std::string nome;
    std::string file;
};

std::vector<Archivio> ArchiviAzienda(store::Database& aziende, long azienda) {
    std::vector<Archivio> archivi;
    auto rs = aziende.OpenRecordset("Select * from Esercizi where Azienda=" + std::to_string(azienda));
    for (; !rs->Eof(); rs->MoveNext()) archivi.push_back({store::CStr(rs->get("Nome")), store::CStr(rs->get("File"))});
    return archivi;
}

std::string Controlla(const fs::path& file) {
    const std::string esito = store::Workspace::Default().IntegrityCheck(file.string());
    if (esito.empty()) return "";
    return "Il file " + file.filename().string() + " non ha superato il controllo di integrità: " +
           esito.substr(0, esito.find('\n')) + ".";
}

// ---- the data folder in use ------------------------------------------------------------------------

struct Uso {
    std::string master;
    int fd = -1;
};

Uso& uso() {
    static Uso u;
    return u;
}

void Rilascia() {
    auto& u = uso();
    if (u.fd >= 0) ::close(u.fd);
    u = {};
}

// Takes the master file of the data folder for this process alone, for as long as the restore runs.
// Returns the descriptor, or -1 when another process holds the folder.
int PrendiEsclusiva(const std::string& master) {
    const int fd = ::open(master.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return ::open("/dev/null", O_RDONLY | O_CLOEXEC);  // nothing there yet: nobody uses it
    if (uso().fd >= 0) ::flock(uso().fd, LOCK_UN);
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        ::close(fd);
        if (uso().fd >= 0) ::flock(uso().fd, LOCK_SH | LOCK_NB);
        return -1;
    }
    return fd;
}

// Copies a folder's content into another, creating what is missing and overwriting files.
void CopiaCartella(const fs::path& da, const fs::path& a) {
    fs::create_directories(a);
    fs::copy(da, a, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

// A restored file or folder, copied beside its target under a hidden name.
fs::path Provvisorio(const fs::path& dati, const std::string& nome) { return dati / ("." + nome + kSuffissoRipristino); }

// Moves the hidden copies of a restore over their targets, then drops the list. Run again after a
// kill it finishes the job: a file already moved has no hidden copy left, a folder is merged again.
void MettiAPosto(const fs::path& dati, const std::vector<std::string>& nomi) {
    for (const std::string& nome : nomi) {
        const fs::path copia = Provvisorio(dati, nome);
        if (fs::is_directory(copia)) {
            CopiaCartella(copia, dati / nome);
            fs::remove_all(copia);
        } else if (fs::exists(copia)) {
            fs::rename(copia, dati / nome);
        }
    }
    fs::remove(dati / kDaMettereAPosto);
}

// The list is written whole under another name and renamed: it exists complete or not at all.
void ScriviDaMettereAPosto(const fs::path& dati, const std::vector<std::string>& nomi) {
    const fs::path lista = dati / (std::string(kDaMettereAPosto) + ".lista");
    {
        std::ofstream out(lista, std::ios::trunc);
        for (const std::string& nome : nomi) out << nome << '\n';
        out.flush();
        if (!out) store::raise(store::err::ErroreDiscoORete, lista.string());
    }
    fs::rename(lista, dati / kDaMettereAPosto);
}

// The hidden copies a restore cut short before its list left behind.
void RimuoviCopieProvvisorie(const fs::path& dati) {
    RimuoviNascosti(dati, ".", kSuffissoRipristino);
    std::error_code ec;
    fs::remove(dati / (std::string(kDaMettereAPosto) + ".lista"), ec);
}

}  // namespace

void CompletaRipristinoInterrotto(const std::string& cartellaDati) {
    const fs::path dati(cartellaDati);
    std::error_code ec;
    if (!fs::is_directory(dati, ec)) return;
    const int esclusiva = PrendiEsclusiva((dati / kMaster).string());
    if (esclusiva < 0) return;  // another copy of the program runs on these data: it has seen to them
    std::ifstream lista(dati / kDaMettereAPosto);
    if (lista) {
        std::vector<std::string> nomi;
        for (std::string nome; std::getline(lista, nome);)
            if (!nome.empty()) nomi.push_back(nome);
        MettiAPosto(dati, nomi);
    } else {
        RimuoviCopieProvvisorie(dati);
    }
    ::close(esclusiva);
    if (uso().fd >= 0) ::flock(uso().fd, LOCK_SH | LOCK_NB);
}

std::string NomeCartellaBackup(const std::tm& t) {
    return "Backup " + DueCifre(t.tm_mday) + "-" + DueCifre(t.tm_mon + 1) + "-" + std::to_string(t.tm_year + 1900) +
           " " + DueCifre(t.tm_hour) + "." + DueCifre(t.tm_min) + "." + DueCifre(t.tm_sec);
}

void SegnaCartellaInUso(const std::string& cartellaDati) {
    const std::string master = (fs::path(cartellaDati) / kMaster).string();
    auto& u = uso();
    if (u.fd >= 0 && u.master == master) return;
    Rilascia();
    const int fd = ::open(master.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return;
    ::flock(fd, LOCK_SH | LOCK_NB);
    u = {master, fd};
}

EsitoCopia EseguiBackup(const std::string& dove, const std::tm& istante, const AvanzamentoCopia& avanzamento) {
    Session& s = session();
    if (!s.dbAziende || !s.dbAziende->isOpen()) return {"Nessun archivio aperto da salvare.", ""};
    std::error_code ec;
    const fs::path cartella(dove);
    if (!fs::is_directory(cartella, ec)) return {"La cartella " + dove + " non esiste.", ""};
    const std::string nome = NomeCartellaBackup(istante);
    const fs::path destinazione = cartella / nome;
    if (fs::exists(destinazione, ec)) return {"La cartella " + destinazione.string() + " esiste già.", ""};

    const fs::path master(s.dbAziende->Name());
    const fs::path report = master.parent_path() / "Report";
    const std::vector<Archivio> archivi = ArchiviAzienda(*s.dbAziende, s.IDAzienda);
    std::uintmax_t servono = Dimensione(master) + Dimensione(report);
    for (const Archivio& a : archivi) servono += Dimensione(a.file);
    const fs::space_info spazio = fs::space(cartella, ec);
    if (!ec && spazio.capacity > 0 && spazio.available < servono + (1 << 20))
        return {"Spazio insufficiente nella cartella " + dove + ": servono " + Mega(servono) + " MB, liberi " +
                    Mega(spazio.available) + " MB. Nessun dato è stato modificato.",
                ""};

    RimuoviAvanzi(cartella);
    const fs::path parziale = cartella / ("." + nome + kParziale);
    if (!fs::create_directory(parziale, ec) || ec)
        return {"Impossibile scrivere nella cartella " + dove + " (" + (ec ? ec.message() : "esiste già") +
                    "). Nessun dato è stato modificato.",
                ""};
    try {
        std::vector<fs::path> copie;
        Mostra(avanzamento, std::string("Salvataggio in corso di ") + kMaster + " ...", 0);
        copie.push_back(parziale / kMaster);
        store::Workspace::Default().BackupDatabase(master.string(), copie.back().string());
        for (std::size_t i = 0; i < archivi.size(); ++i) {
            const fs::path file(archivi[i].file);
            Mostra(avanzamento, "Salvataggio in corso di " + file.filename().string() + " ...",
                   static_cast<int>(i * 100 / archivi.size()));
            copie.push_back(parziale / file.filename());
            store::Workspace::Default().CompactDatabase(file.string(), copie.back().string());
        }
        if (fs::is_directory(report, ec)) CopiaCartella(report, parziale / "Report");
        ScriviValoreIni((parziale / kContenuto).string(), "Backup", "Azienda", std::to_string(s.IDAzienda));
        for (const fs::path& copia : copie)
            if (std::string errore = Controlla(copia); !errore.empty()) throw std::runtime_error(errore);
        fs::rename(parziale, destinazione);
    } catch (const std::exception& e) {
        fs::remove_all(parziale, ec);
        return {std::string("Copia di backup non riuscita: ") + e.what() +
                    " I dati non sono stati modificati e nessuna copia parziale è rimasta.",
                ""};
    }
    Mostra(avanzamento, "Operazione completata", 100);
    return {"", destinazione.string()};
}

EsitoCopia ImportaBackup(const std::string& backup, const std::string& cartellaDati, const AvanzamentoCopia& avanzamento) {
    std::error_code ec;
    const fs::path origine(backup), dati(cartellaDati);
    if (fs::equivalent(origine, dati, ec)) return {};
    const fs::path masterCopia = origine / kMaster;
    if (!fs::is_regular_file(masterCopia, ec)) return {kNonBackup, ""};

    // What the backup must hold: for each company whose archives it carries, every period's file.
    std::vector<fs::path> daControllare{masterCopia};
    try {
        if (std::string errore = Controlla(masterCopia); !errore.empty()) return {errore, ""};
        auto copia = store::Workspace::Default().OpenDatabase(masterCopia.string(), false, true);
        auto rs = copia->OpenRecordset("Select * from Esercizi Order By Azienda, ID");
        struct Riga {
            long azienda;
            std::string nome;
            std::string file;
        };
        std::vector<Riga> righe;
        for (; !rs->Eof(); rs->MoveNext())
            righe.push_back({store::CLng(rs->get("Azienda")), store::CStr(rs->get("Nome")),
                             fs::path(store::CStr(rs->get("File"))).filename().string()});
        rs->Close();
        copia->Close();
        std::vector<long> presenti;
        const std::string azienda = LeggiValoreIni((origine / kContenuto).string(), "Backup", "Azienda");
        if (!azienda.empty()) presenti.push_back(std::atol(azienda.c_str()));
        for (const Riga& r : righe)
            if (fs::exists(origine / r.file, ec)) presenti.push_back(r.azienda);
        if (presenti.empty() && !righe.empty()) return {kNonBackup, ""};
        for (const Riga& r : righe) {
            if (std::find(presenti.begin(), presenti.end(), r.azienda) == presenti.end()) continue;
            if (!fs::exists(origine / r.file, ec))
                return {"Nella cartella di backup manca l'archivio dell'esercizio " + r.nome + " (" + r.file +
                            "). Nessun dato è stato modificato.",
                        ""};
            daControllare.push_back(origine / r.file);
        }
        for (std::size_t i = 1; i < daControllare.size(); ++i)
            if (std::string errore = Controlla(daControllare[i]); !errore.empty()) return {errore, ""};
    } catch (const store::JetError& e) {
        return {std::string(kNonBackup) + " (" + e.what() + ")", ""};
    }

    const int esclusiva = PrendiEsclusiva((dati / kMaster).string());
    if (esclusiva < 0)
        return {"I dati della cartella " + cartellaDati +
                    " sono in uso da un'altra copia del programma: chiuderla prima di importare il backup.",
                ""};

    Session& s = session();
    const std::string archivio = s.dbArchivio && s.dbArchivio->isOpen() ? s.dbArchivio->Name() : "";
    const std::string aziende = s.dbAziende && s.dbAziende->isOpen() ? s.dbAziende->Name() : "";
    if (!archivio.empty()) s.dbArchivio->Close();
    if (!aziende.empty()) s.dbAziende->Close();
    std::string errore;
    try {
        // Every file and folder is first copied beside its target under a hidden name; then the list
        // of them is written, and only then are they moved in place. A kill before the list leaves the
        // data as they were (the copies are dropped at the next start); after it, the next start
        // finishes the moves.
        std::vector<std::string> nomi;
        for (const auto& voce : fs::directory_iterator(origine))
            if ((voce.is_regular_file() && voce.path().filename() != kContenuto) || voce.is_directory())
                nomi.push_back(voce.path().filename().string());
        try {
            for (std::size_t i = 0; i < nomi.size(); ++i) {
                Mostra(avanzamento, "Importazione di " + nomi[i] + " ...", static_cast<int>(i * 100 / (nomi.size() + 1)));
                const fs::path da = origine / nomi[i];
                if (fs::is_directory(da)) CopiaCartella(da, Provvisorio(dati, nomi[i]));
                else fs::copy_file(da, Provvisorio(dati, nomi[i]), fs::copy_options::overwrite_existing);
            }
            ScriviDaMettereAPosto(dati, nomi);
        } catch (...) {
            RimuoviCopieProvvisorie(dati);
            throw;
        }
        MettiAPosto(dati, nomi);
    } catch (const std::exception& e) {
        errore = std::string("Importazione non riuscita: ") + e.what();
    }
    ::close(esclusiva);
    Rilascia();
    SegnaCartellaInUso(cartellaDati);
    try {
        if (!aziende.empty()) s.dbAziende = store::Workspace::Default().OpenDatabase(aziende);
        if (!archivio.empty() && fs::exists(archivio, ec)) s.dbArchivio = store::Workspace::Default().OpenDatabase(archivio);
    } catch (const store::JetError& e) {
        if (errore.empty()) errore = std::string("Importazione non riuscita: ") + e.what();
    }
    Mostra(avanzamento, "Importazione completata!", 100);
    return {errore, ""};
}

}  // namespace core
