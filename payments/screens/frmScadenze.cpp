#include "payments/screens/frmScadenze.h"

#include <QColor>
#include <QLineEdit>
#include <QPushButton>

#include "core/dialogs.h"
#include "core/diritti.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "core/stampa.h"
#include "payments/saldo.h"
#include "payments/screens/EditorePerNome.h"
#include "payments/screens/frmScadenzeCerca.h"
#include "payments/screens/frmScadenzeEdita.h"
#include "store/clock.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

}  // namespace

frmScadenze::frmScadenze(QWidget* parent) : RegistroBase(Nome, parent) {
    const int modo = core::ModoSchermo(Nome);
    modo_ = modo % payments::ConAvvisiDiOggi == payments::ScadenzePassive ? payments::ScadenzePassive
                                                                          : payments::ScadenzeAttive;
    // From the day's reminders: the unpaid instalments whose reminder is today.
    if (modo >= payments::ConAvvisiDiOggi) {
        filtro_.avviso = store::ShortDate(store::Oggi());
        filtro_.stato = 0;
    }

    Definizione d;
    d.titolo = payments::TitoloScadenze(modo_);
    d.sorgente = filtro_.avviso.empty() ? payments::SorgenteScadenze(modo_) : payments::IstruzioneScadenze(modo_, filtro_);
    d.ordinamento = "DataScadenza";
    d.campi = &payments::CampiScadenze();
    d.colonne = {"DataScadenza", "DescScadenza", "ImportoScadenza", "ImportoTotale", "Rata",
                 "Rate",         "Stato",        "Destinatario",    "DescDocumento"};
    d.ricerca = {"DescScadenza", "Destinatario", "DescDocumento"};
    // An instalment still to settle stands out.
    d.colori = {{"Pagata", [](const store::Value& v) { return !v.isNull() && !store::CBool(v); }, QColor(Qt::red),
                 QColor(Qt::white)}};
    d.diritti = {core::ScadenzeVedere, core::ScadenzeModificare, core::ScadenzeModificare, core::ScadenzeModificare};
    d.editor = [](QWidget* parent) { return std::make_unique<frmScadenzeEdita>(parent); };
    // An instalment with a payment stays; the list is read again whatever the answer.
    d.guardia = ui::Guardia{"Scadenza", {{"Pagamenti", "Pagamenti"}}};
    d.domandaElimina = [](store::Recordset&) { return core::Testo("s233"); };
    d.ricaricaDopoElimina = true;

    btnPaga = aggiungiComando("btnPaga", Q(payments::DidascaliaPaga(modo_)), 0, [this] { Paga(); });
    btnStampa = aggiungiComando("btnStampa", "S&tampa", 0, [this] { StampaScadenze(); });
    Command1 = aggiungiComando("Command1", "&Seleziona tutto", 0, [this] { SelezionaTutto(); });
    imgCerca = aggiungiComando("imgCerca", "Ricerc&a... (F3)", 0, [this] { Ricerca(); });
    resize(1180, 620);
    carica(std::move(d));
}

payments::RigaScadenza frmScadenze::rigaCorrente() {
    if (!Grid->haRigaCorrente()) return {};
    return {Grid->idCorrente(), ui::IdDi(Grid->valore("Documento")), ui::IdDi(Grid->valore("Spesa"))};
}

// A new instalment is on the register's side; a changed one has no payment yet and opens the
// editor of what it belongs to.
std::optional<Apertura> frmScadenze::aperturaPer(ui::Elenco&, Modalita modalita) {
    if (modalita == Modalita::Nuovo) {
        core::ImpostaModoSchermo(frmScadenzeEdita::Nome, modo_);
        return Apertura{Modalita::Nuovo, 0, Grid};
    }
    const payments::RigaScadenza riga = rigaCorrente();
    if (payments::ScadenzaSenzaPagamenti(riga.id) == payments::Falso) {
        core::MsgBox(core::Testo("s234"), core::vbExclamation);
        return std::nullopt;
    }
    const std::optional<std::string> editor = payments::EditorScadenza(riga);
    if (!editor) return std::nullopt;
    if (*editor == frmScadenzeEdita::Nome) return Apertura{Modalita::Modifica, 0, Grid};
    // The expense's instalment editor is the expense screens'.
    pagamenti_schermi::ApriEditorePerNome(*editor, modo_, {Modalita::Modifica, 0, Grid}, this);
    Grid->Aggiorna();
    return std::nullopt;
}

void frmScadenze::Paga() {
    const payments::RigaScadenza riga = rigaCorrente();
    const std::optional<payments::AperturaPagamento> a = payments::PagaScadenza(modo_, riga);
    if (!a || !ui::consentito(a->diritto)) return;
    pagamenti_schermi::ApriEditorePerNome(a->editor, a->modo, {Modalita::Nuovo, 0, nullptr, "Scadenza", riga.id}, this);
    // An expense's row has no document: the first refresh touches nothing, and the expense keeps its flag.
    payments::AggiornaPagatoDocumento(riga.documento);
    payments::AggiornaPagataScadenza(riga.id);
    Grid->Aggiorna();
}

void frmScadenze::ImpostaFiltro(const payments::FiltroScadenze& filtro) {
    filtro_ = filtro;
    txtCerca->clear();
    Grid->setSorgente(payments::IstruzioneScadenze(modo_, filtro_));
    Grid->Aggiorna();
}

void frmScadenze::SelezionaTutto() {
    filtro_ = {};
    txtCerca->clear();
    Grid->setSorgente(payments::SorgenteScadenze(modo_));
    Grid->Aggiorna();
}

void frmScadenze::Ricerca() {
    frmScadenzeCerca cerca(modo_, filtro_, this);
    if (const auto filtro = cerca.Cerca()) ImpostaFiltro(*filtro);
}

void frmScadenze::StampaScadenze() {
    core::RichiestaStampa r;
    r.sezione = "Scadenze";
    r.subReports.Add("Elenco", Grid->istruzione());
    r.parametri.Add("Titolo", "Titolo", core::Testo(payments::TitoloScadenze(modo_)));
    r.parametri.Add("Criterio", "Criterio", payments::CriterioScadenze(filtro_));
    core::Stampa(r);
}
