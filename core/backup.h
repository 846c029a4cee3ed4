// Backup and restore of the data: a backup is a plain folder "Backup dd-mm-yyyy hh.mm.ss" with the
// master file, one compacted archive per period of the current company and the report folder.
#pragma once

#include <ctime>
#include <functional>
#include <string>

namespace core {

// What a long run shows while it works: a title and the percentage done (0 to 100).
using AvanzamentoCopia = std::function<void(const std::string& titolo, int percento)>;

// "Backup " plus day-month-year, a blank and hour.minute.second, each part but the year in two digits.
std::string NomeCartellaBackup(const std::tm& istante);

// The outcome of a backup or a restore: an empty message means done.
struct EsitoCopia {
    std::string messaggio;
    std::string cartella;  // the backup folder made
    bool riuscito() const { return messaggio.empty(); }
};

// Backs up into a new folder inside `dove`. The files are written under a hidden temporary name that
// is renamed to the backup's name only once every copy has passed the engine's integrity check, so
// a backup cut short leaves no folder that looks like a backup (its remains are removed by the next
// one). The open files are copied through the engine's online backup, never as plain files.
EsitoCopia EseguiBackup(const std::string& dove, const std::tm& istante, const AvanzamentoCopia& avanzamento = {});

// Puts a backup folder back over the data folder `cartellaDati`: the master file, the archives and
// the report folder. Refuses a folder that holds no backup, one that misses an archive of a period
// of its company or holds a damaged file, and data in use by another copy of the program. The
// session's open master file and archive are closed and opened again on the restored files.
EsitoCopia ImportaBackup(const std::string& backup, const std::string& cartellaDati,
                         const AvanzamentoCopia& avanzamento = {});

// Finishes a restore of this data folder that was cut short once its copies were all in, or drops
// the copies of one cut short before: the data are as before the restore or as after it, never
// half. Run before the master file is opened; does nothing while another process uses the folder.
void CompletaRipristinoInterrotto(const std::string& cartellaDati);

// Marks the data folder as in use by this process for as long as it runs (a shared lock on its
// master file that a restore of another process finds). A new folder replaces the previous one.
void SegnaCartellaInUso(const std::string& cartellaDati);

}  // namespace core
