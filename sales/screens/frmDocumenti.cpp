#include "sales/screens/frmDocumenti.h"

#include <QColor>

#include "core/diritti.h"
#include "core/dialogs.h"
#include "core/documenti.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "payments/primanota.h"
#include "payments/saldo.h"
#include "sales/documenti.h"
#include "sales/screens/frmDocumentiEdita.h"
#include "store/convert.h"
#include "ui/VetraGrid.h"

namespace {

long tipoDelRegistro(long tipo) {
    if (tipo != 0) return tipo;
    const long modo = core::ModoSchermo(frmDocumenti::Nome);
    return modo != 0 ? modo : core::TipoFatturaEmessa;
}

}  // namespace

frmDocumenti::frmDocumenti(QWidget* parent, long tipo) : RegistroBase(Nome, parent), tipo_(tipoDelRegistro(tipo)) {
    const bool clienti = core::TipoVersoCliente(tipo_);
    Definizione d;
    d.titolo = core::TitoloTipoDocumento(tipo_);
    d.sorgente = SorgenteTipo();
    d.ordinamento = "Data";
    d.campi = &sales::CampiDocumenti();
    d.colonne = {"Data", "Prefisso", "Numero", "Suffisso", "ImportoTotale", "DescEstrattoConto"};
    d.ricerca = {clienti ? "Denominazione" : "DescFornitore", "Numero", "Prefisso", "Suffisso"};
    // An unpaid document stands out in red.
    d.colori = {{"Pagato", [](const store::Value& v) { return !v.isNull() && !store::CBool(v); }, QColor(Qt::red),
                 QColor(Qt::white)}};
    d.diritti = {core::DocumentiVedere, core::DocumentiModificare, core::DocumentiModificare,
                 core::DocumentiModificare};
    const long t = tipo_;
    if (clienti) d.editor = [t](QWidget* parent) { return std::make_unique<frmDocumentiEdita>(parent, t); };
    else d.editor = [t](QWidget* parent) { return std::make_unique<frmDocumentiFornitoriEdita>(parent, t); };
    carica(std::move(d));
}

std::string frmDocumenti::SorgenteTipo() const { return "Select * from qrDocumenti where Tipo=" + std::to_string(tipo_); }

// A settled or partly paid document is changed only when the user says so.
std::optional<Apertura> frmDocumenti::aperturaPer(ui::Elenco&, Modalita modalita) {
    if (modalita == Modalita::Modifica) {
        const std::string motivo = payments::MotivoBloccoDocumento(Grid->idCorrente());
        if (!motivo.empty() && core::MsgBox(motivo + core::Testo("s265"), core::vbYesNo | core::vbQuestion) != core::vbYes)
            return std::nullopt;
    }
    return Apertura{modalita, 0, Grid};
}

// The question, then the lines, charges, instalments and payments; the grid deletes the row itself.
bool frmDocumenti::PrimaDiEliminare(long id) {
    const std::string domanda = core::Testo("s263") + store::ConcatText(Grid->valore("Numero")) + core::Testo("s264");
    if (core::MsgBox(domanda, core::vbYesNo | core::vbQuestion) != core::vbYes) return false;
    sales::EliminaRigheDocumento(id);
    return true;
}

// The journal rows whose payment went with the document.
void frmDocumenti::DopoEliminato(long) { payments::PulisciPrimaNota(); }
