// What the registers of customers and suppliers share: the record's fields beside the list as the
// first of its tabs, tabs of rows that hang on the record (each read only, with its own right and
// empty source), the call menu, and an editor with name, address, contacts and bank laid out once.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ui/Dettaglio.h"
#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

class QMenu;
class QPlainTextEdit;
class QTabWidget;
class QUrl;

namespace ui {

class VText;

// A tab's list of a record's rows: read only, with its own right to see and its empty source.
DefinizioneDettaglio SchedaSolaLettura(const char* nome, int diritto, std::function<std::string(long)> righe,
                                       std::string vuota, const core::TabellaCampi* campi,
                                       std::vector<std::string> colonne);

// A titled group of the side panel and the fields it shows, named as in the field table.
struct GruppoCampi {
    const char* titolo;   // a language key or a fixed caption
    std::vector<const char*> campi;
};

}  // namespace ui

class RegistroAnagrafica : public RegistroBase {
    Q_OBJECT
public:
    // The call menu's two entries: "sip:" and the current row's number, through the desktop's handler.
    void Chiama(const char* campo);
    // Where the link goes: the desktop's handler of the scheme, unless a test put its own.
    static inline std::function<void(const QUrl&)> apriLink;

    QTabWidget* sTab = nullptr;
    QPushButton* btnChiama = nullptr;
    QMenu* mTelefona = nullptr;

protected:
    RegistroAnagrafica(const char* nome, QWidget* parent);

    // The side panel with its groups, made the first tab of sTab, which takes its place beside the list.
    void costruisciSchede(const core::TabellaCampi& campi, const std::vector<ui::GruppoCampi>& gruppi);
    // A tab with a list of rows: the list itself, or the page made around it (options above the list).
    ui::Dettaglio* aggiungiScheda(const QString& titolo, const ui::DefinizioneDettaglio& definizione,
                                  const std::function<QWidget*(ui::Dettaglio*)>& pagina = {});
    // btnChiama with the menu of the two numbers.
    void aggiungiChiamata();
    long idCorrente() const;
};

// The editor of a customer or a supplier: the name on two lines, address, tax codes, contacts, then
// whatever the screen adds, then bank and notes.
class EditorAnagrafica : public EditorBase {
    Q_OBJECT
public:
    ui::VText* VText1;    // the name
    ui::VText* VText13;   // the name's second line
    ui::VText* VText2;    // Indirizzo
    ui::VText* VText4;    // Cap
    ui::VText* VText5;    // Citta
    ui::VText* txtProvincia;
    ui::VText* VText6;    // PartitaIva
    ui::VText* VText7;    // CodiceFiscale
    ui::VText* VText8;    // Telefono
    ui::VText* VText9;    // Cellulare
    ui::VText* VText10;   // Fax
    ui::VText* VText11;   // mail
    ui::VText* VText12;   // web
    ui::VText* VText16 = nullptr;   // Banca
    ui::VText* VText17 = nullptr;   // ABI
    ui::VText* VText18 = nullptr;   // CAB
    ui::VText* VText19 = nullptr;   // NumeroConto
    ui::VText* VText22 = nullptr;   // CIN
    QPlainTextEdit* Text1 = nullptr;   // Note

protected:
    // campoNome: the name's field ("DescCliente"); its second line is that name and "2".
    EditorAnagrafica(const char* nome, std::string tabella, std::string titolo, const core::TabellaCampi& campi,
                     const std::string& campoNome, QWidget* parent);

    // Bank and notes, the last rows: the screen calls it after its own.
    void aggiungiBancaENote();
    // The name must not be blank: otherwise the message, the focus to the box, false.
    bool nomeRichiesto(const std::string& messaggio);

    ui::VText* casella(const char* nome, const char* campo, int larghezza = 0);
    // Several boxes on one row; each after the first gets its caption in front.
    QWidget* riga(std::initializer_list<std::pair<const char*, QWidget*>> controlli);

private:
    const core::TabellaCampi& campi_;
};
