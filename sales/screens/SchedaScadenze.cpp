#include "sales/screens/SchedaScadenze.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/diritti.h"
#include "core/dialogs.h"
#include "core/documenti.h"
#include "core/impostazioni.h"
#include "payments/generazione_scadenze.h"
#include "payments/primanota.h"
#include "payments/saldo.h"
#include "sales/scadenze_documento.h"
#include "store/convert.h"
#include "store/format.h"
#include "ui/Cifra.h"
#include "ui/Dettaglio.h"
#include "ui/Dialoghi.h"
#include "ui/Scadenzario.h"
#include "ui/Stile.h"
#include "ui/VetraGrid.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

QString Importo(double importo) { return Q(store::Format(store::Value::Double(importo), "#,0.00")); }

using ui::cifra;

QLabel* titolo(const char* nome, const std::string& testo, QWidget* parent) {
    auto* l = new QLabel(Q(testo), parent);
    l->setObjectName(nome);
    return l;
}

QGroupBox* riquadro(const QString& titolo, QWidget* contenuto, QWidget* parent) {
    auto* g = new QGroupBox(titolo, parent);
    auto* l = new QVBoxLayout(g);
    l->addWidget(contenuto);
    return g;
}

}  // namespace

SchedaScadenze::SchedaScadenze(long tipo, const sales::CriteriDocumenti& criteri,
                               std::function<void()> rileggiDocumento, QWidget* parent)
    : QWidget(parent), tipo_(tipo), criteri_(criteri), rileggiDocumento_(std::move(rileggiDocumento)) {
    setObjectName("SchedaScadenze");
    const bool attivo = core::TipoAttivo(tipo_);

    ui::DefinizioneDettaglio sc = ui::DettaglioScadenze(
        {"GridScadenze", attivo ? "qrScadenzeAttive" : "qrScadenzePassive", "qrScadenzeAttive", "Documento",
         "DataScadenza", &sales::CampiScadenzeDocumento(), {"DescScadenza", "DataScadenza", "ImportoScadenza", "Rata", "Rate"},
         core::ScadenzeVedere, core::ScadenzeModificare, "frmScadenzeEdita",
         {"btnNuovaScadenza", "btnModificaScadenza", "btnEliminaScadenza"}});
    fmScadenze = new ui::Dettaglio(sc, [this](bool nuova) { return documentoPerScadenza(nuova); }, [] {}, this);

    ui::DefinizioneDettaglio pg = ui::DettaglioPagamenti(
        {"GridPagamenti", attivo ? "qrIncassi" : "qrPagamenti", "qrIncassi", "Documento", "DataPagamento",
         &sales::CampiPagamentiDocumento(), {"DataPagamento", "DescPagamento", "ImportoPagamento"},
         core::PagamentiVedere, core::IncassiModificare, "frmPagamentiEdita",
         {"btnNuovoPagamento", "btnModificaPagamento", "btnEliminaPagamento"}},
        scadenzaDelPagamento_);
    fmPagamenti = new ui::Dettaglio(pg, [this](bool) { return documentoPerPagamento(); },
                                    [this] { ui::protetto([this] { pagamentiCambiati(); }); }, this);

    btnGeneraScadenze = ui::comando("btnGeneraScadenze", "&Genera scadenze", this);
    btnIncassa = ui::comando("btnIncassa", Q(core::Testo(attivo ? "s274" : "s330")), this);
    connect(btnGeneraScadenze, &QPushButton::clicked, this, [this] {
        if (ui::consentito(core::ScadenzeModificare)) ui::protetto([this] { GeneraScadenze(); });
    });
    // A new payment: the instalment in front, if any, is the one to pay; the list's own new does the same.
    connect(btnIncassa, &QPushButton::clicked, this, [this] { Incassa(); });
    disconnect(fmPagamenti->btnNuovo, &QPushButton::clicked, nullptr, nullptr);
    connect(fmPagamenti->btnNuovo, &QPushButton::clicked, this, [this] { Incassa(); });

    fmResoconto = new QGroupBox("Resoconto", this);
    fmResoconto->setObjectName("fmResoconto");
    lblIncassato = cifra("lblIncassato", fmResoconto);
    lblDaIncassare = cifra("lblDaIncassare", fmResoconto);
    lblImportoTutti = cifra("lblImportoTutti", fmResoconto);
    lblIncassatoTutti = cifra("lblIncassatoTutti", fmResoconto);
    lblDaIncassareTutti = cifra("lblDaIncassareTutti", fmResoconto);
    const std::string incassato = core::Testo(attivo ? "s217" : "s174");
    const std::string daIncassare = core::Testo(attivo ? "s218" : "s175");
    auto* r = new QGridLayout(fmResoconto);
    r->setHorizontalSpacing(ui::Spaziatura * 2);
    r->addWidget(new QLabel("<b>Documento</b>", fmResoconto), 0, 0);
    r->addWidget(titolo("lblTitoloIncassato", incassato, fmResoconto), 0, 3);
    r->addWidget(lblIncassato, 0, 4);
    r->addWidget(titolo("lblTitoloDaIncassare", daIncassare, fmResoconto), 0, 5);
    r->addWidget(lblDaIncassare, 0, 6);
    r->addWidget(new QLabel("<b>Tutti i documenti</b>", fmResoconto), 1, 0);
    r->addWidget(titolo("lblTitoloImportoTutti", "Importo", fmResoconto), 1, 1);
    r->addWidget(lblImportoTutti, 1, 2);
    r->addWidget(titolo("lblTitoloIncassataTutti", incassato, fmResoconto), 1, 3);
    r->addWidget(lblIncassatoTutti, 1, 4);
    r->addWidget(titolo("lblTitoloDaIncassareTutti", daIncassare, fmResoconto), 1, 5);
    r->addWidget(lblDaIncassareTutti, 1, 6);
    r->setColumnStretch(7, 1);

    // Each part shows only with its right to see it.
    QGroupBox* riquadroScadenze = riquadro("Scadenze", fmScadenze, this);
    QGroupBox* riquadroPagamenti = riquadro(Q(core::Testo(attivo ? "s16" : "s23")), fmPagamenti, this);
    riquadroScadenze->setVisible(core::HaPrivilegio(core::ScadenzeVedere));
    riquadroPagamenti->setVisible(core::HaPrivilegio(core::PagamentiVedere));
    fmResoconto->setVisible(core::HaPrivilegio(core::PrimaNotaVedere));

    auto* liste = new QHBoxLayout;
    liste->setSpacing(ui::Spaziatura);
    liste->addWidget(riquadroScadenze, 3);
    liste->addWidget(riquadroPagamenti, 2);
    auto* comandi = new QHBoxLayout;
    comandi->setSpacing(ui::Spaziatura);
    comandi->addWidget(btnGeneraScadenze);
    comandi->addWidget(btnIncassa);
    comandi->addStretch(1);
    auto* colonna = new QVBoxLayout(this);
    colonna->setSpacing(ui::Spaziatura);
    colonna->addLayout(liste, 1);
    colonna->addWidget(fmResoconto);
    colonna->addLayout(comandi);
}

void SchedaScadenze::Carica(long documento) {
    documento_ = documento;
    fmScadenze->Carica(documento);
    fmPagamenti->Carica(documento);
    if (isVisibleTo(window())) AggiornaResocontoDocumento();
    else resocontoDaLeggere_ = true;
}

void SchedaScadenze::showEvent(QShowEvent* e) {
    QWidget::showEvent(e);
    ui::protetto([this] {
        if (resocontoDaLeggere_) AggiornaResocontoDocumento();
        AggiornaResocontoTutti();
    });
}

void SchedaScadenze::AggiornaResocontoDocumento() {
    resocontoDaLeggere_ = false;
    const auto saldo = documento_ ? sales::SaldoDelDocumento(tipo_, documento_) : std::nullopt;
    lblIncassato->setText(saldo ? Importo(saldo->pagato) : QString());
    lblDaIncassare->setText(saldo ? Importo(saldo->daPagare) : QString());
}

void SchedaScadenze::AggiornaResocontoTutti() {
    const sales::ResocontoDocumenti r = sales::CalcolaResocontoDocumenti(criteri_);
    lblImportoTutti->setText(Importo(r.importo));
    lblIncassatoTutti->setText(Importo(r.pagato));
    lblDaIncassareTutti->setText(Importo(r.daPagare));
}

void SchedaScadenze::AggiornaStatoScadenza() {
    ui::VetraGrid* g = fmScadenze->griglia();
    // Out of sight the list may still hold another document's rows: those are not this one's.
    const store::Value documento = g->valore("Documento");
    if (documento.isNull() || store::CLng(documento) != documento_) return;
    payments::AggiornaPagataScadenza(g->idCorrente());
    g->Aggiorna();
}

void SchedaScadenze::GeneraScadenze() {
    if (documento_ == 0) return;
    payments::MostraGeneraScadenze(documento_);
    fmScadenze->Carica(documento_);
}

// A new instalment only while the document has no payment; a change only of an instalment with none.
std::optional<long> SchedaScadenze::documentoPerScadenza(bool nuova) {
    if (documento_ == 0) return 0;
    const std::string rifiuto = nuova ? sales::RifiutoNuovaScadenza(documento_)
                                      : sales::RifiutoModificaScadenza(fmScadenze->griglia()->idCorrente());
    if (rifiuto.empty()) return documento_;
    core::MsgBox(rifiuto, core::vbExclamation);
    return std::nullopt;
}

std::optional<long> SchedaScadenze::documentoPerPagamento() { return documento_; }

void SchedaScadenze::Incassa() {
    if (documento_ == 0 || !ui::consentito(core::IncassiModificare)) return;
    ui::protetto([this] {
        ui::VetraGrid* g = fmScadenze->griglia();
        const bool aperta = g->haRigaCorrente() && store::CLng(g->valore("Documento")) == documento_ &&
                            !store::CBool(g->valore("Pagata"));
        Apertura a{Modalita::Nuovo, 0, fmPagamenti->griglia(), "Documento", documento_};
        if (aperta) a = {Modalita::Nuovo, 0, fmPagamenti->griglia(), "Scadenza", g->idCorrente()};
        if (FabbricaEditorDi("frmPagamentiEdita")(this)->Edita(a)) pagamentiCambiati();
    });
}

// A payment deleted: the document's Pagato and its instalment's Pagata from what is left, the
// lists and the figures again, then the journal rows that lost their payment.
void SchedaScadenze::pagamentiCambiati() {
    payments::AggiornaPagatoDocumento(documento_);
    const long scadenza = scadenzaDelPagamento_;
    scadenzaDelPagamento_ = 0;
    if (scadenza > 0) payments::AggiornaPagataScadenza(scadenza);
    if (rileggiDocumento_) rileggiDocumento_();
    fmScadenze->Carica(documento_);
    fmPagamenti->Carica(documento_);
    AggiornaResocontoDocumento();
    AggiornaResocontoTutti();
    payments::PulisciPrimaNota();
}
