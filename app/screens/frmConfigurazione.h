// First run and change of data folder: the folder of the data (a server's folder for a client),
// then the company and the period to work on.
#pragma once

#include <optional>

#include <QDialog>

class QLineEdit;
class QPushButton;
class QToolButton;
namespace ui { class VetraCombo; }

class frmConfigurazione : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmConfigurazione";
    explicit frmConfigurazione(QWidget* parent = nullptr);

    void Sfoglia();
    void NuovaAzienda();
    void ModificaAzienda();
    void NuovoEsercizio();
    void Conferma();
    void Annulla();

    QLineEdit* txtAziende;
    QPushButton* btnSfoglia;
    ui::VetraCombo* cbAziendaClient;
    ui::VetraCombo* cbEsercizioClient;
    QToolButton* imgNew3;
    QToolButton* imgEdit3;
    QToolButton* imgNew2;
    QPushButton* btnConferma;
    QPushButton* btnAnnulla;

protected:
    void reject() override;

private:
    void RiempiCombo();
    void AziendaScelta();
    void ScegliCreato(ui::VetraCombo* combo, std::optional<long> creato);
    long aziendaScelta() const;
};
