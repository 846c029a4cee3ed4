// The main panel: the one non-modal top window. Menus, the side lists of commands, the reminders
// of the day, the choice of company and period, the user and the data folder.
#pragma once

#include <QMainWindow>

#include <map>
#include <string>

#include "core/registro_schermi.h"

class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QMenu;
class QPushButton;
class QToolBox;


class frmMain : public QMainWindow {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmMain";
    explicit frmMain(QWidget* parent = nullptr);
    ~frmMain() override;

    // The panel on screen, or null.
    static frmMain* istanza();
    // Shows a new panel in place of any earlier one (start-up runs again after a change of folder).
    static void Apri();

    // Fill both combos and fix the current ids.
    void CaricaComboDati();
    void CaricaAziende();
    void CaricaCBEsercizi();
    // Start-up's last act: from now on the combos react to the user.
    void FineCaricamento() { Caricamento = false; }
    void AggiornaAvvisi();
    // What another screen announced: the companies, or the periods, changed.
    void Novita(core::Novita novita);
    // The dates and archive of the current period, below the choice of company and period.
    void MostraEsercizio();

    // The handlers, as the menus, lists and buttons run them.
    void Comando(const std::string& nome);
    void ComandoRapido(const std::string& chiave);
    void Avviso(const std::string& chiave);
    void CambiaAzienda();
    void CambiaEsercizio();
    void CambiaUtente();
    void CambiaCartella();
    void ChiusuraEsercizio();
    void ModificaPeriodo();
    // mNuovoEsercizio: closes the company's open periods, asking first, then makes the new one from
    // the last, and runs the change of period to it (with its login). True when a period was made.
    bool NuovoEsercizio();
    void Guida();

    QAction* azione(const std::string& nome) const;

    QComboBox* cbAzienda;
    QComboBox* cbEsercizio;
    QLineEdit* txtUtente;
    QLabel* lblCartellaDati;
    QLabel* lblVersione;
    QLabel* lblDal;
    QLabel* lblAl;
    QLabel* lblFileArchivio;
    QPushButton* btnCambiaUtente;
    QPushButton* Command1;
    QToolBox* ListBar;
    QListWidget* MenuRapidi;
    QListWidget* BarAvvisi;
    QMenu* mAnagrafiche;
    QMenu* mContabilita;
    QMenu* mStrumenti;
    QMenu* mInfo;

protected:
    void closeEvent(QCloseEvent* e) override;
    // Space on a side list runs its item, as Enter does.
    bool eventFilter(QObject* oggetto, QEvent* evento) override;

private:
    void CostruisciMenu();
    QWidget* CostruisciTestata();
    QWidget* CostruisciEsercizio();
    QWidget* CostruisciListe();
    QListWidget* NuovaLista(const char* nome);
    void Abilita(bool abilitato);
    void AbilitaChiusura(bool abilitata);
    bool FinePeriodo(bool modifica);
    void ChiudiAltriSchermi();
    void DisabilitaSenzaEsercizio();

    bool Caricamento = true;
    bool sostituito_ = false;
    std::map<std::string, QAction*> azioni_;
};
