#include "payments/screens/frmPagamenti.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "core/dialogs.h"
#include "core/diritti.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "core/stampa.h"
#include "payments/saldo.h"
#include "payments/screens/EditorePerNome.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

namespace {

ui::VetraPicker* picker(const char* nome, QWidget* parent) {
    auto* p = new ui::VetraPicker(parent);
    p->setObjectName(nome);
    return p;
}

}  // namespace

frmPagamenti::frmPagamenti(QWidget* parent)
    : RegistroBase(Nome, parent), pkDal(picker("pkDal", this)), pkAl(picker("pkAl", this)) {
    modo_ = core::ModoSchermo(Nome) == payments::RegistroIncassi ? payments::RegistroIncassi : payments::RegistroPagamenti;
    const int diritto = payments::DirittoPagamenti(modo_);

    Definizione d;
    d.titolo = payments::TitoloPagamenti(modo_);
    d.sorgente = payments::SorgentePagamenti(modo_);
    d.ordinamento = "DataPagamento";
    d.campi = &payments::CampiPagamenti();
    d.colonne = {"DescPagamento", "DataPagamento", "ImportoPagamento", "NumeroAssegno", "DescDocumento", "ImportoTotale",
                 "DescScadenza",  "DataScadenza",  "ImportoScadenza",  "Rata",          "Rate",          "Destinatario"};
    d.ricerca = {"DescPagamento"};
    d.diritti = {modo_ == payments::RegistroIncassi ? core::IncassiVedere : core::PagamentiVedere, diritto, diritto,
                 diritto};
    // Never made: aperturaPer opens the editors itself.
    d.editor = FabbricaEditorDi(modo_ == payments::RegistroIncassi ? "frmPagamentiEdita" : "frmPagamentiSpeseEdita");

    // The dates beside the search, before its command.
    auto* ricerca = static_cast<QBoxLayout*>(layout()->itemAt(0)->layout());
    const int prima = ricerca->indexOf(btnCerca);
    auto* lblDal = new QLabel("&Dal", this);
    lblDal->setBuddy(pkDal->casella());
    auto* lblAl = new QLabel("A&l", this);
    lblAl->setBuddy(pkAl->casella());
    ricerca->insertWidget(prima, lblDal);
    ricerca->insertWidget(prima + 1, pkDal);
    ricerca->insertWidget(prima + 2, lblAl);
    ricerca->insertWidget(prima + 3, pkAl);
    disconnect(btnCerca, &QPushButton::clicked, this, &RegistroBase::Cerca);
    disconnect(txtCerca, &QLineEdit::returnPressed, this, &RegistroBase::Cerca);
    connect(btnCerca, &QPushButton::clicked, this, [this] { ui::protetto([this] { CercaPagamenti(); }); });
    connect(txtCerca, &QLineEdit::returnPressed, this, [this] { ui::protetto([this] { CercaPagamenti(); }); });

    btnStampa = aggiungiComando("btnStampa", "S&tampa", diritto, [this] { StampaPagamenti(); });
    resize(1180, 560);
    carica(std::move(d));
}

void frmPagamenti::CercaPagamenti() {
    const std::string campo = cbCerca->currentIndex() < 0 ? "DescPagamento" : cbCerca->currentData().toString().toStdString();
    Grid->setSorgente(
        payments::IstruzionePagamenti(modo_, campo, txtCerca->text().toStdString(), pkDal->testo(), pkAl->testo()));
    Grid->Aggiorna();
}

std::optional<Apertura> frmPagamenti::aperturaPer(ui::Elenco&, Modalita modalita) {
    std::optional<long> salvato;
    if (modalita == Modalita::Nuovo) {
        // Payments are recorded against an expense, after the right to collect as well.
        if (modo_ == payments::RegistroPagamenti && !ui::consentito(core::IncassiModificare)) return std::nullopt;
        const char* editor = modo_ == payments::RegistroIncassi ? "frmPagamentiEdita" : "frmPagamentiSpeseEdita";
        salvato = pagamenti_schermi::ApriEditorePerNome(editor, modo_, {Modalita::Nuovo, 0, Grid}, this);
    } else {
        const auto a = payments::ModificaPagamento(modo_, ui::IdDi(Grid->valore("Documento")), ui::IdDi(Grid->valore("Spesa")));
        if (!a) return std::nullopt;
        salvato = pagamenti_schermi::ApriEditorePerNome(a->editor, a->modo, {Modalita::Modifica, 0, Grid}, this);
    }
    // The list shows the payment saved, as the editor left it.
    Grid->Aggiorna();
    if (salvato) Grid->vaiAId(*salvato);
    return std::nullopt;
}

bool frmPagamenti::PrimaDiEliminare(long) {
    if (core::MsgBox(core::Testo("s262"), core::vbYesNo | core::vbQuestion) != core::vbYes) return false;
    payments::RiapriPrimaDellEliminazione(
        {ui::IdDi(Grid->valore("Documento")), ui::IdDi(Grid->valore("Spesa")), ui::IdDi(Grid->valore("Scadenza"))},
        modo_ == payments::RegistroIncassi);
    return true;
}

void frmPagamenti::DopoEliminato(long id) { payments::EliminaPrimaNotaDelPagamento(id); }

void frmPagamenti::StampaPagamenti() {
    core::RichiestaStampa r;
    r.sezione = "Pagamenti";
    r.subReports.Add("Elenco", Grid->istruzione());
    r.parametri.Add("Titolo", "Titolo", core::Testo(payments::TitoloStampaPagamenti(modo_)));
    r.parametri.Add("Criterio", "Criterio", payments::CriterioPagamenti(txtCerca->text().toStdString()));
    core::Stampa(r);
}
