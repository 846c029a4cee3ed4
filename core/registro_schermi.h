// The screens the logic opens by name. The screen layer registers a factory for each screen at
// start-up; the logic asks for "frmLogin" or "frmMain" without knowing the widgets, and tests run
// the logic with scripted answers in place of the screens.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace core {

// Builds the screen and shows it. For a modal screen it returns when the screen is closed, with
// true when the user confirmed; for the main panel it returns once the panel is shown.
using FabbricaSchermo = std::function<bool()>;

void registraSchermo(const std::string& nome, FabbricaSchermo fabbrica);
bool schermoRegistrato(const std::string& nome);

// An editor opened by name on a new record (the panel's quick list, a linked combo): it answers the
// id it saved, which also goes to IDRecordEdit for the callers that read it there.
void registraEditor(const std::string& nome, std::function<std::optional<long>()> apri);

// Shows a screen modally through core::dialogs().runModal, so that a test script can answer for
// it. A screen with no factory raises error 3265 when it is really to be shown.
bool MostraModale(const std::string& nome);

// Shows the one non-modal top window (frmMain). Error 3265 when it has no factory.
void MostraPannello(const std::string& nome);

// Closes the first visible open screen of that name (compared without case) and returns true;
// a hidden one is passed over. The screen layer installs how; with none installed, nothing is open.
using ChiusuraSchermo = std::function<bool(const std::string& nome)>;
void installaChiusuraSchermo(ChiusuraSchermo chiusura);
bool ChiudiFormAperta(const std::string& nome);

// What start-up does as its very last act: the main panel installs the clearing of its loading
// flag, so that its combo handlers start to react only when everything is open.
void installaFineCaricamento(std::function<void()> fine);
void FineCaricamento();

// What a screen tells the main panel without knowing it: the companies changed (one added, renamed
// or deleted), or their periods did. The panel listens; with nobody listening nothing happens.
enum class Novita { Aziende, Esercizi };
void installaAscoltoNovita(std::function<void(Novita)> ascolto);
void AnnunciaNovita(Novita novita);

// Drops every factory and hook: for tests, and for the screen layer's shutdown.
void svuotaRegistroSchermi();

}  // namespace core
