// Customers: the register with everything that hangs on a customer on its tabs (statement, open
// instalments, payments, lines sold, visits), and the customer's editor.
#pragma once

#include <functional>

#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

class QCheckBox;
class QMenu;
class QPlainTextEdit;
class QTabWidget;
class QUrl;

namespace ui {
class Dettaglio;
class VText;
class VetraCombo;
class VetraPicker;
}  // namespace ui

class frmClienti : public RegistroBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmClienti";
    explicit frmClienti(QWidget* parent = nullptr);

    // The call menu's two entries: "sip:" and the current row's number, through the desktop's handler.
    void Chiama(const char* campo);
    // Where the link goes: the desktop's handler of the scheme, unless a test put its own.
    static inline std::function<void(const QUrl&)> apriLink;

    QTabWidget* sTab;
    ui::Dettaglio* GridEstratto;
    ui::Dettaglio* GridScadenze;
    ui::Dettaglio* GridPagamenti;
    ui::Dettaglio* GridMovimenti;
    ui::Dettaglio* GridAssistenze;
    QCheckBox* chkPartiteAperte;
    ui::VetraPicker* pkEstrattoDal;
    ui::VetraPicker* pkEstrattoAl;
    QComboBox* cbMese;
    QPushButton* btnChiama;
    QMenu* mTelefona;

private:
    void costruisciPannello();
    void costruisciSchede();
    QWidget* schedaEstratto();
    QWidget* schedaAssistenze();
    void CaricaAssistenze();
    long idCorrente() const;
};

class frmClientiEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmClientiEdita";
    explicit frmClientiEdita(QWidget* parent = nullptr);

    ui::VText* VText1;    // DescCliente
    ui::VText* VText13;   // DescCliente2
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
    ui::VetraCombo* VetraCombo4;   // IvaApplicata
    ui::VetraCombo* VetraCombo5;   // CondizioniPagamento
    ui::VText* VText20;   // Sconto1
    ui::VText* VText21;   // Sconto2
    ui::VText* VText16;   // Banca
    ui::VText* VText17;   // ABI
    ui::VText* VText18;   // CAB
    ui::VText* VText19;   // NumeroConto
    ui::VText* VText22;   // CIN
    QPlainTextEdit* Text1;   // Note

protected:
    bool Valida() override;
};
