// The plain logic of the main panel: its commands with their rights, the side lists, the company
// and period combos and their rules, the reminders of the day, the change of company and period.
#pragma once

#include <string>
#include <vector>

namespace core {

// One command of the panel: a menu item, an item of ListBar or of MenuRapidi.
struct ComandoPannello {
    std::string nome;        // menu name (mFatture) or list key
    std::string menu;        // the menu it sits in (mAnagrafiche, mContabilita, mScadenze, mStrumenti, mInfo)
    std::string titolo;      // default caption
    std::string schermo;     // the screen it opens ("" for a command the panel runs itself)
    int privilegio = 0;      // rights position tested first, 0 for none
    int modo = -1;           // the mode handed to a shared screen (document kind, due-date side), -1 none
    std::string icona;       // icon theme name
    std::string chiaveTesto; // language key of the caption, "" where the caption is fixed
    std::string righe{};     // for a new record: the line editor that follows it ("" none)

    // The caption shown: the key's text when it has a key (blank when the language file lacks it,
    // as every caption is), otherwise the fixed one.
    std::string didascalia() const;
};

// The menu tree in display order.
const std::vector<ComandoPannello>& ComandiMenu();
// The items of the two ListBar sections and of MenuRapidi, with the language key of their caption
// ("" where the caption is fixed).
struct VoceLista {
    std::string chiave;      // the key: the name of the menu it runs, or of the editor command
    std::string titolo;      // fixed caption
    std::string chiaveTesto; // language key of the caption
};
struct SezioneLista {
    std::string titolo;
    std::string chiaveTesto;
    std::vector<VoceLista> voci;
};
const std::vector<SezioneLista>& SezioniListBar();
const std::vector<ComandoPannello>& ComandiRapidi();   // editors for a new record
const ComandoPannello* CercaComando(const std::string& nome);

// The mode a shared screen (frmDocumenti, frmScadenze, frmPagamenti, frmPrimaNota) is opened in:
// set by the panel just before opening it, read by the screen at load.
void ImpostaModoSchermo(const std::string& schermo, int modo);
int ModoSchermo(const std::string& schermo);

// Whether a command has its screen in this build: commands of screens still to come stay in the
// menus and lists, disabled.
bool ComandoDisponibile(const ComandoPannello& c);

// Tests a command's right; a refusal shows MsgNegato with the warning icon.
bool PrivilegioConcesso(int posizione);

// Runs a command: tests its right, closes an open screen of its name, sets its mode and opens it.
// Commands run by the panel itself are not handled here. Returns false when nothing was opened.
bool EseguiComando(const ComandoPannello& c);

// ---- company and period combos ----------------------------------------------------------------
struct VoceCombo {
    long id = 0;
    std::string testo;
};
std::vector<VoceCombo> ElencoAziende();
std::vector<VoceCombo> ElencoEsercizi(long azienda);
// Where the current id stands in a combo's rows, -1 when it is not there.
int PosizioneDi(const std::vector<VoceCombo>& voci, long id);

// CaricaComboDati's rule for the period: the current one when listed, else the last (latest
// start) which then becomes current and is written to the settings; -1 with no rows.
int ScegliEsercizioCorrente(const std::vector<VoceCombo>& esercizi);

// A change of company: makes it current with no period and closes the archive.
void ImpostaAzienda(long idAzienda);

// A change of period after the login: opens its archive (bringing it up to date first when the
// program changed) and writes the settings.
void ApriEsercizio(long idEsercizio);


// The current period as the panel shows it: its dates ("aperto" with no end) and archive file;
// all blank with no archive open.
struct DescrizioneEsercizio {
    std::string dal, al, file;
};
DescrizioneEsercizio EsercizioCorrente();

// ---- reminders ----------------------------------------------------------------------------------
struct Avviso {
    std::string chiave;   // ScadenzeAttive / ScadenzePassive
    std::string titolo;   // s50 / s51
    int modo = 0;         // the frmScadenze mode it opens
};
// Due dates whose reminder falls today and that are not paid, on the open archive.
std::vector<Avviso> AvvisiDiOggi();

}  // namespace core
