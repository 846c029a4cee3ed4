// The two registers of money: the instalments still to collect or to pay (active and passive
// side) with their stored filter, and the payments and collections recorded. What they list, the
// statement of a search, the print's criterion, and which editor each command opens under which
// right, as plain functions the screens call.
#pragma once

#include <optional>
#include <string>

#include "core/campi.h"

namespace payments {

// The instalments' register: 0 customers' instalments (to collect), 1 suppliers' (to pay).
inline constexpr int ScadenzeAttive = 0;
inline constexpr int ScadenzePassive = 1;
// Added to the mode by the panel's reminders: the register opens on the unpaid instalments whose
// reminder falls today.
inline constexpr int ConAvvisiDiOggi = 2;

// The payments' register: 0 payments, 1 collections.
inline constexpr int RegistroPagamenti = 0;
inline constexpr int RegistroIncassi = 1;

// The columns of the two registers, captions and masks.
const core::TabellaCampi& CampiScadenze();
const core::TabellaCampi& CampiPagamenti();

// "Select * from qrScadenzeAttive" or "Select * from qrScadenzePassive".
std::string SorgenteScadenze(int modo);
// The language key of the title, "s34" or "s35", and the caption of btnPaga.
std::string TitoloScadenze(int modo);
std::string DidascaliaPaga(int modo);

// The stored filter of the instalments' register, as its search screen leaves it.
struct FiltroScadenze {
    bool dataDal = false, dataAl = false;
    std::string dal, al;   // as typed
    bool destinatario = false;
    long cliente = 0, fornitore = 0;
    std::string avviso;    // a reminder date; "" for none
    int stato = 2;         // 0 not paid, 1 paid, otherwise both
};

// The source of the mode with the filter's conditions, the first of them opening the "where".
std::string IstruzioneScadenze(int modo, const FiltroScadenze& f);
// The print's criterion: state, dates, customer and supplier.
std::string CriterioScadenze(const FiltroScadenze& f);

// An instalment's row as the commands read it.
struct RigaScadenza {
    long id = 0;
    long documento = 0;
    long spesa = 0;
};

// The editor of an instalment: frmScadenzeEdita on a document, frmScadenzeSpeseEdita on an
// expense, none for a row with neither.
std::optional<std::string> EditorScadenza(const RigaScadenza& r);

// Which payment editor a command opens, in which mode, under which right.
struct AperturaPagamento {
    std::string editor;   // "frmPagamentiEdita" or "frmPagamentiSpeseEdita"
    int modo = 0;         // 1 collection, 0 payment
    int diritto = 0;
};
// btnPaga of the instalments' register on its row: collection on the active side, payment on the
// passive one; an expense's row always with the right to pay. Nothing for a row with neither link.
std::optional<AperturaPagamento> PagaScadenza(int modoRegistro, const RigaScadenza& r);

// The payments' register.
std::string SorgentePagamenti(int modo);
std::string TitoloPagamenti(int modo);   // "Incassi" or "Pagamenti"
int DirittoPagamenti(int modo);          // 10 for collections, 8 for payments
// The search: the field Like the text, then the dates when given ("" or "0.00.00": none).
std::string IstruzionePagamenti(int modo, const std::string& campo, const std::string& testo,
                                const std::string& dal, const std::string& al);
// btnModifica: the editor of the row's document or expense, nothing with neither.
std::optional<AperturaPagamento> ModificaPagamento(int modo, long documento, long spesa);
// The print: the title key, and the criterion ("" with no searched text).
std::string TitoloStampaPagamenti(int modo);
std::string CriterioPagamenti(const std::string& testo);

}  // namespace payments
