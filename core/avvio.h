// Start-up: from a bare process to an open main panel. Main decides the data folder, the Azienda
// and the Esercizio, opens the four databases, brings the archive up to date, identifies the user
// and shows frmMain. The main panel runs it again after the data folder changes.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

namespace core {

enum class EsitoAvvio {
    Aperto,   // the main panel is open: the event loop keeps the program alive
    Termina,  // the process is to end now, without closing anything
};

// Thrown where the program is to end on the spot (after s325 in ArchivioAggiornato); whoever
// catches it ends the process. Main turns it into EsitoAvvio::Termina.
class TerminaProgramma : public std::exception {
public:
    const char* what() const noexcept override { return "fine del programma"; }
};

// Runs the start-up. A failure in opening or compacting a file is not caught: the JetError reaches
// the caller, which shows it in the error box and ends the process.
EsitoAvvio Main();

// Whether the archive's structure was brought up to date by this very executable: its row's
// DataAggiornamento equals the executable file's last-modified date and time to the second.
// An older or newer date both mean "not up to date". With no row for the file it shows s325 and
// throws TerminaProgramma.
bool ArchivioAggiornato(const std::string& file);

// Last-modified date and time of the running executable, to the second, as a local-time serial.
// It is what the structure update stores in DataAggiornamento.
double DataEseguibile();

// The executable whose date counts; nullopt gives back the running one (tests fix another file).
void fissaEseguibile(std::optional<std::string> percorso);

}  // namespace core
