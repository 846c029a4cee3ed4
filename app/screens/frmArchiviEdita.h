// A new period of a company: its description (the archive's file name) and its start date.
#pragma once

#include <optional>

#include <QDialog>

class QProgressBar;
class QPushButton;
namespace ui {
class VText;
class VetraPicker;
}  // namespace ui

class frmArchiviEdita : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmArchiviEdita";
    explicit frmArchiviEdita(QWidget* parent = nullptr);

    // The entry operation: the period's id, whether it is new, its company, a start date to offer
    // (the no-date sentinel offers 1 January of this year) and whether the last period's data are
    // carried over.
    void Edita(long id, bool nuovo, long azienda, double data, bool riporto);
    // Opens the screen for a new period of that company with an empty archive; true when made.
    static std::optional<long> NuovoEsercizioVuoto(long azienda, QWidget* parent = nullptr);
    // The same, carrying over the last period's open documents and the journal balances.
    static std::optional<long> NuovoEsercizioConRiporto(long azienda, QWidget* parent = nullptr);

    void Conferma();

    ui::VText* VText1;
    ui::VetraPicker* pkData;
    QProgressBar* pBar;  // shown while the last period's data are carried over
    QPushButton* btnConferma;
    QPushButton* btnAnnulla;

private:
    long azienda_ = 0;
    std::optional<long> creato_;
    bool riporto_ = false;
};
