#include "ui/Elenco.h"

#include "core/archivio_sql.h"
#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "core/record.h"
#include "ui/Dialoghi.h"

namespace ui {

bool consentito(int posizione) { return core::PrivilegioConcesso(posizione); }

Colonna ColonnaDa(const core::Campo& campo) {
    Qt::Alignment allineamento = Qt::AlignVCenter;
    switch (campo.allineamento) {
        case core::Allineamento::Sinistra: allineamento |= Qt::AlignLeft; break;
        case core::Allineamento::Destra: allineamento |= Qt::AlignRight; break;
        case core::Allineamento::Centro: allineamento |= Qt::AlignHCenter; break;
    }
    return {campo.nome, core::Didascalia(campo.didascalia), campo.larghezza, campo.maschera, allineamento};
}

Elenco::Elenco(VetraGrid* griglia, OspiteElenco& ospite, QWidget* schermo)
    : griglia_(griglia), ospite_(ospite), schermo_(schermo) {}

void Elenco::imposta(DefinizioneElenco definizione) {
    def_ = std::move(definizione);
    griglia_->setDatabase(database());
    griglia_->setOrdinamento(def_.ordinamento, def_.direzione);
    griglia_->pulisciColonne();
    if (def_.campi)
        for (const std::string& campo : def_.colonne) griglia_->aggiungiColonna(ColonnaDa((*def_.campi)[campo]));
    for (const RegolaColore& regola : def_.colori) griglia_->aggiungiRegolaColore(regola);
}

store::DatabasePtr Elenco::database() const { return def_.database ? def_.database : core::ArchivioAperto(); }

void Elenco::Carica(const std::string& sorgente) {
    griglia_->setSorgente(sorgente);
    griglia_->Aggiorna();
}

void Elenco::apriEditor(Modalita modalita) {
    if (!def_.editor) return;
    protetto([&] {
        std::optional<Apertura> apertura = ospite_.aperturaPer(*this, modalita);
        if (!apertura) return;
        std::optional<long> salvato = def_.editor(schermo_)->Edita(*apertura);
        if (salvato) ospite_.dopoSalvato(*this, *salvato);
    });
    griglia_->setFocus();
}

void Elenco::Nuovo() {
    if (consentito(def_.diritti.nuovo)) apriEditor(Modalita::Nuovo);
}

void Elenco::Modifica() {
    if (griglia_->haRigaCorrente() && consentito(def_.diritti.modifica)) apriEditor(Modalita::Modifica);
}

bool Elenco::movimentato(long id) {
    if (!def_.guardia) return false;
    std::vector<core::VoceTabella> voci;
    for (const auto& t : def_.guardia->tabelle) voci.push_back({t.tabella, core::Didascalia(t.descrizione)});
    std::string messaggio;
    if (!core::RecordMovimentato(id, def_.guardia->campo, voci, messaggio)) return false;
    core::MsgBox(messaggio, core::vbExclamation);
    return true;
}

void Elenco::Elimina() {
    if (!griglia_->haRigaCorrente() || !consentito(def_.diritti.elimina)) return;
    protetto([this] {
        const long id = griglia_->idCorrente();
        if (movimentato(id) || !ospite_.primaDiEliminare(*this, id)) return;
        const bool si = !def_.domandaElimina || core::MsgBox(def_.domandaElimina(*griglia_->Recordset()),
                                                             core::vbYesNo | core::vbQuestion) == core::vbYes;
        if (si && griglia_->EliminaRiga()) ospite_.dopoEliminato(*this, id);
        if (def_.ricaricaDopoElimina) griglia_->Aggiorna();
    });
    griglia_->setFocus();
}

}  // namespace ui
