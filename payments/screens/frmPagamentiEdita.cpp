#include "payments/screens/frmPagamentiEdita.h"

#include <QComboBox>
#include <QCompleter>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QStringListModel>

#include "core/archivio_sql.h"
#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "core/varie.h"
#include "store/clock.h"
#include "payments/screens/Cifra.h"
#include "store/convert.h"
#include "store/format.h"
#include "ui/Dialoghi.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraPicker.h"

namespace {

using payments::Contro;

QString Q(const std::string& s) { return QString::fromStdString(s); }

long idDi(const store::Value& v) { return v.isNull() || v.kind() == store::Value::Kind::Text ? 0 : store::CLng(v); }

store::Value Lungo(long id) { return store::Value::Long(static_cast<std::int32_t>(id)); }

QString Importo(double d) { return Q(store::Format(store::Value::Double(store::Round(d, 2)), "#,0.00")); }

ui::VText* casella(const char* nome, const char* campo, QWidget* parent) {
    auto* t = new ui::VText(parent);
    t->setObjectName(nome);
    t->setDataField(campo);
    return t;
}

ui::VetraCombo* scelta(const char* nome, QWidget* parent) {
    auto* c = new ui::VetraCombo(parent);
    c->setObjectName(nome);
    c->setSizePolicy(QSizePolicy::Expanding, c->sizePolicy().verticalPolicy());
    return c;
}

// A document, expense or instalment as the row of its pick holds it.
payments::Dovuto DovutoDa(const ui::VetraCombo* c, bool scadenza, Contro contro) {
    payments::Dovuto d;
    d.id = idDi(c->valore());
    d.cliente = contro == Contro::Spesa && !scadenza ? 0 : idDi(c->campo("Cliente"));
    d.fornitore = idDi(c->campo("Fornitore"));
    d.documento = scadenza ? idDi(c->campo("Documento")) : contro == Contro::Documento ? d.id : 0;
    d.spesa = scadenza ? idDi(c->campo("Spesa")) : contro == Contro::Spesa ? d.id : 0;
    d.pagato = store::Round(core::NumeroOZero(c->campo("ImportoPagato")), 2);
    d.daPagare = store::Round(core::NumeroOZero(c->campo("DaPagare")), 2);
    d.descrizione = store::ConcatText(c->campo("DescDocumento"));
    return d;
}

}  // namespace

EditorPagamento::EditorPagamento(const char* nome, Contro contro, QWidget* parent)
    : EditorBase(nome, "Pagamenti", core::Testo(contro == Contro::Spesa ? "s223" : "s16"), parent),
      pkData(new ui::VetraPicker(this)),
      txtDescrizione(casella("txtDescrizione", "DescPagamento", this)),
      txtImporto(casella("txtImporto", "ImportoPagamento", this)),
      txtPagamento(casella("txtPagamento", "TipoPagamento", this)),
      txtCC(casella("txtCC", "CC", this)),
      VText2(casella("VText2", "NumeroAssegno", this)),
      cbFornitore(scelta("cbFornitore", this)),
      cbDocumenti(scelta(contro == Contro::Spesa ? "cbSpese" : "cbDocumenti", this)),
      cbScadenze(scelta("cbScadenze", this)),
      cbDest(new QComboBox(this)),
      lblPagato(cifra("lblPagato", this)),
      lblDaPagare(cifra("lblDaPagare", this)),
      lblTitoloPagato(new QLabel(this)),
      lblTitoloDaPagare(new QLabel(this)),
      contro_(contro) {
    pkData->setObjectName("pkData");
    pkData->setDataField("DataPagamento");
    pkData->setMaximumWidth(160);
    txtImporto->setNumerico(true);
    txtImporto->setMaschera("#,0.00");
    txtImporto->setAlignment(Qt::AlignRight);
    txtImporto->setMaximumWidth(140);
    txtImporto->setPredefinito("0,00");
    VText2->setMaximumWidth(200);
    cbDest->setObjectName("cbDest");
    cbDest->addItems({"Banca", "Cassa", "Altro"});
    cbDest->setMaximumWidth(140);

    const std::vector<ui::VetraCombo::ColonnaLista> anagrafica = {
        {"Indirizzo", "Indirizzo", 1800}, {"Cap", "Cap", 600},           {"Citta", "Città", 1200},
        {"Provincia", "Prov.", 500},      {"Telefono", "Telefono", 1100}, {"Fax", "Fax", 1100}};
    auto conNome = [&](const char* campo, const char* titolo) {
        std::vector<ui::VetraCombo::ColonnaLista> c{{campo, titolo, 2400}};
        c.insert(c.end(), anagrafica.begin(), anagrafica.end());
        return c;
    };
    cbFornitore->setCampoTesto("DescFornitore");
    cbFornitore->setColonne(conNome("DescFornitore", "Fornitore"));
    cbDocumenti->setCampoTesto("DescDocumento");
    cbDocumenti->setColonne({{"DescDocumento", contro == Contro::Spesa ? "Spesa" : "Documento", 2400},
                             {"Data", core::Testo("s84"), 1100, "dd/mm/yyyy"},
                             {contro == Contro::Spesa ? "Numero" : "DescNum", "Numero", 800},
                             {contro == Contro::Spesa ? "ImportoSpesa" : "ImportoTotale", "Importo", 1200, "#,0.00"}});
    cbScadenze->setCampoTesto("DescScadenza");
    cbScadenze->setColonne({{"DescScadenza", "Scadenza", 2000},
                            {"DataScadenza", "Data", 1100, "dd/mm/yyyy"},
                            {"ImportoScadenza", "Importo", 1200, "#,0.00"},
                            {"Rata", "Rata", 500},
                            {"Rate", "Rate", 500}});

    // The counterpart: a customer or else a supplier.
    auto* fmDestinatario = new QGroupBox("Selezionare il destinatario del pagamento", this);
    fmDestinatario->setObjectName("fmDestinatario");
    auto* destinatario = new QFormLayout(fmDestinatario);
    if (contro == Contro::Documento) {
        cbCliente = scelta("cbCliente", fmDestinatario);
        cbCliente->setCampoTesto("Denominazione");
        cbCliente->setColonne(conNome("Denominazione", "Cliente"));
        cbCliente->setSorgente("Select * from qrClienti Order by DescCliente");
        destinatario->addRow("Cliente", cbCliente);
        destinatario->addRow(new QLabel("oppure", fmDestinatario));
    }
    cbFornitore->setParent(fmDestinatario);
    cbFornitore->setSorgente("Select * from Fornitori Order By DescFornitore");
    destinatario->addRow("Fornitore", cbFornitore);
    campi()->addRow(fmDestinatario);

    aggiungiCampo(contro == Contro::Spesa ? "Spese da pagare" : "Documenti da pagare", cbDocumenti);
    aggiungiCampo("Scadenze", cbScadenze);
    campi()->addRow(lblTitoloPagato, lblPagato);
    campi()->addRow(lblTitoloDaPagare, lblDaPagare);
    aggiungiCampo("Data", pkData);
    aggiungiCampo("Descrizione pagamento", txtDescrizione);
    aggiungiCampo("Importo", txtImporto);
    aggiungiCampo("Tipo Pagamento", txtPagamento);
    aggiungiCampo("Conto Corrente", txtCC);
    aggiungiCampo("Numero Assegno", VText2);
    aggiungiCampo("Destinazione", cbDest);
    setMinimumWidth(620);

    ui::protetto([this] {
        if (cbCliente) cbCliente->Aggiorna();
        cbFornitore->Aggiorna();
    });
    // Each handler works with the loading flag set, so that its own changes start no other.
    auto reagisci = [this](auto metodo) {
        return [this, metodo] {
            if (caricamento_) return;
            caricamento_ = true;
            ui::protetto([&] { (this->*metodo)(); });
            caricamento_ = false;
        };
    };
    if (cbCliente) connect(cbCliente, &ui::VetraCombo::valoreCambiato, this, reagisci(&EditorPagamento::ClienteCambiato));
    connect(cbFornitore, &ui::VetraCombo::valoreCambiato, this, reagisci(&EditorPagamento::FornitoreCambiato));
    connect(cbDocumenti, &ui::VetraCombo::valoreCambiato, this, reagisci(&EditorPagamento::DocumentoCambiato));
    connect(cbScadenze, &ui::VetraCombo::valoreCambiato, this, reagisci(&EditorPagamento::ScadenzaCambiata));
    connect(txtImporto, &QLineEdit::textChanged, this, [this] { ImportoCambiato(); });
}

void EditorPagamento::Elenca(ui::VetraCombo* combo, const std::string& sorgente) {
    combo->setSorgente(sorgente);
    // A list text the engine refuses leaves the pick empty.
    try {
        combo->Aggiorna();
    } catch (const std::exception&) {
        combo->pulisci();
    }
}

void EditorPagamento::Scegli(ui::VetraCombo* combo, long id) {
    if (combo) combo->setValore(id > 0 ? Lungo(id) : store::Value());
}

void EditorPagamento::Completamento(ui::VText* c, const char* campo) {
    QStringList valori;
    for (const std::string& v : payments::ValoriUsati(campo)) valori << Q(v);
    auto* completa = new QCompleter(new QStringListModel(valori, c), c);
    completa->setCompletionMode(QCompleter::InlineCompletion);
    completa->setCaseSensitivity(Qt::CaseInsensitive);
    c->setCompleter(completa);
}

void EditorPagamento::Origine(long& documento, long& spesa, long& scadenza) {
    documento = spesa = scadenza = 0;
    if (!nuovo()) {
        auto rs = core::Apri("Select * from Pagamenti where ID=" + std::to_string(id()));
        if (!rs->Eof()) {
            documento = idDi(rs->get("Documento"));
            spesa = idDi(rs->get("Spesa"));
            scadenza = idDi(rs->get("Scadenza"));
        }
    } else if (apertura().campoPadre == "Scadenza") {
        scadenza = apertura().idPadre;
        if (auto s = payments::LeggiScadenza(scadenza)) {
            documento = s->documento;
            spesa = s->spesa;
        }
    } else if (apertura().campoPadre == "Documento") {
        documento = apertura().idPadre;
    } else if (apertura().campoPadre == "Spesa") {
        spesa = apertura().idPadre;
    }
    if (contro_ == Contro::Spesa) modo_ = payments::ModoPagamento;
    else if (documento > 0) modo_ = payments::ModoDelDocumento(documento);
    else modo_ = payments::ModoIncasso;
}

// The picks are filled without the cascade for a change, and through it for a new payment opened
// on a document, expense or instalment, so that the amount left is proposed.
void EditorPagamento::DopoCarica() {
    caricamento_ = true;
    long documento = 0, spesa = 0, scadenza = 0;
    Origine(documento, spesa, scadenza);
    const long proprio = contro_ == Contro::Spesa ? spesa : documento;
    const bool incasso = modo_ == payments::ModoIncasso;
    setWindowTitle(Q(core::Testo(contro_ == Contro::Spesa ? "s223" : incasso ? "s16" : "s23") + " - " +
                     core::Testo(nuovo() ? "s109" : "s110")));
    lblTitoloPagato->setText(Q(core::Testo(incasso && contro_ == Contro::Documento ? "s217" : "s174")));
    lblTitoloDaPagare->setText(Q(core::Testo(incasso && contro_ == Contro::Documento ? "s218" : "s175")));
    cbDest->setCurrentIndex(0);
    Completamento(txtPagamento, "TipoPagamento");
    Completamento(txtCC, "CC");
    if (nuovo()) pkData->setValore(store::Value::Date(store::Oggi()));

    // A change shows only the payment's own document and instalment: the picks stay locked on them.
    const std::string soloProprio = std::string(" where ID=") + std::to_string(proprio);
    if (!nuovo()) {
        Elenca(cbDocumenti, contro_ == Contro::Spesa ? "Select * from qrSpesePagamenti" + soloProprio
                                                     : std::string("Select * from ") +
                                                           (incasso ? "qrDocumentiIncassi" : "qrDocumentiPagamenti") +
                                                           soloProprio);
        Elenca(cbScadenze, "Select * from qrScadenzePagamenti where ID=" + std::to_string(scadenza));
        auto rs = core::Apri("Select Cliente, Fornitore from Pagamenti where ID=" + std::to_string(id()));
        if (!rs->Eof()) {
            Scegli(cbCliente, idDi(rs->get("Cliente")));
            Scegli(cbFornitore, idDi(rs->get("Fornitore")));
        }
        Scegli(cbDocumenti, proprio);
        Scegli(cbScadenze, scadenza);
        for (QWidget* w : {static_cast<QWidget*>(cbCliente), static_cast<QWidget*>(cbFornitore),
                           static_cast<QWidget*>(cbDocumenti), static_cast<QWidget*>(cbScadenze)})
            if (w) w->setEnabled(false);
        scelto_ = DovutoDa(cbDocumenti, false, contro_);
        if (scelto_->id == 0) scelto_.reset();
        sceltaScadenza_.reset();
        if (scadenza > 0 && cbScadenze->valore().isNull() == false) sceltaScadenza_ = DovutoDa(cbScadenze, true, contro_);
        // Both figures from the document; already paid from the instalment when there is one.
        MostraDovuto(scelto_ ? scelto_->pagato : 0, scelto_ ? scelto_->daPagare : 0);
        giaPagato_ = sceltaScadenza_ ? sceltaScadenza_->pagato : scelto_ ? scelto_->pagato : 0;
        ImportoCambiato();
        caricamento_ = false;
        return;
    }

    // A new payment lists what is still due; opened on something, the counterpart's own.
    long controparte = 0;
    if (proprio > 0) {
        const auto d = contro_ == Contro::Spesa ? payments::LeggiSpesa(proprio) : payments::LeggiDocumento(proprio, modo_);
        if (d) controparte = contro_ == Contro::Spesa || d->cliente == 0 ? d->fornitore : d->cliente;
        const bool perCliente = contro_ == Contro::Documento && d && d->cliente > 0;
        if (contro_ == Contro::Spesa) Elenca(cbDocumenti, payments::SpeseDelFornitore(controparte));
        else if (perCliente) Elenca(cbDocumenti, payments::DocumentiDelCliente(controparte, modo_));
        else Elenca(cbDocumenti, payments::ListaDocumentiPagabili(true, modo_));
    } else {
        Elenca(cbDocumenti, contro_ == Contro::Spesa ? payments::ListaSpesePagabili(true)
                                                     : payments::ListaDocumentiPagabili(true, modo_));
    }
    Elenca(cbScadenze, payments::ListaScadenzePagabili(true, modo_, contro_));
    Azzera();
    if (proprio > 0) {
        Scegli(cbDocumenti, proprio);
        DocumentoCambiato();
    }
    if (scadenza > 0) {
        Scegli(cbScadenze, scadenza);
        ScadenzaCambiata();
    }
    // Opened from a customer or a supplier: the counterpart picked, its documents listed.
    const long controparteAperta = apertura().idPadre;
    if (apertura().campoPadre == "Cliente" && cbCliente) {
        Scegli(cbCliente, controparteAperta);
        ClienteCambiato();
    } else if (apertura().campoPadre == "Fornitore") {
        Scegli(cbFornitore, controparteAperta);
        FornitoreCambiato();
    }
    caricamento_ = false;
}

void EditorPagamento::MostraDovuto(double pagato, double daPagare) {
    lblPagato->setText(Importo(pagato));
    lblDaPagare->setText(Importo(daPagare));
}

void EditorPagamento::Azzera() {
    txtDescrizione->clear();
    txtImporto->setTesto("0");
    MostraDovuto(0, 0);
    giaPagato_ = 0;
    scelto_.reset();
    sceltaScadenza_.reset();
}

void EditorPagamento::ClienteCambiato() {
    const long cliente = idDi(cbCliente->valore());
    Scegli(cbFornitore, 0);
    Scegli(cbDocumenti, 0);
    Elenca(cbDocumenti, payments::DocumentiDelCliente(cliente, modo_));
    Elenca(cbScadenze, payments::ScadenzeDelCliente(cliente));
    Scegli(cbScadenze, 0);
    Azzera();
}

void EditorPagamento::FornitoreCambiato() {
    const long fornitore = idDi(cbFornitore->valore());
    Scegli(cbCliente, 0);
    Scegli(cbDocumenti, 0);
    if (contro_ == Contro::Spesa) {
        Elenca(cbDocumenti, payments::SpeseDelFornitore(fornitore));
        Elenca(cbScadenze, payments::ScadenzeSpeseDelFornitore(fornitore));
    } else if (fornitore > 0) {
        // Neither list narrows to the supplier, whatever the mode.
        Elenca(cbDocumenti, "Select * from qrDocumentiIncassi where DaPagare<>0");
        Elenca(cbScadenze, "Select * from qrScadenzePagamenti where DaPagare<>0 and AgenteDestinatario=0");
    }
    Scegli(cbScadenze, 0);
    Azzera();
}

void EditorPagamento::DocumentoCambiato() {
    const payments::Dovuto d = DovutoDa(cbDocumenti, false, contro_);
    if (contro_ == Contro::Documento) Scegli(cbCliente, d.id > 0 ? d.cliente : 0);
    Scegli(cbFornitore, d.id > 0 ? d.fornitore : 0);
    Scegli(cbScadenze, 0);
    sceltaScadenza_.reset();
    if (d.id == 0) {
        Elenca(cbScadenze, payments::ScadenzeDi(contro_, 0));
        Azzera();
        return;
    }
    Elenca(cbScadenze, payments::ScadenzeDi(contro_, d.id));
    scelto_ = d;
    MostraDovuto(d.pagato, d.daPagare);
    giaPagato_ = d.pagato;
    txtImporto->setTesto(store::NumberText(d.daPagare));
    Descrivi();
}

void EditorPagamento::ScadenzaCambiata() {
    const payments::Dovuto s = DovutoDa(cbScadenze, true, contro_);
    if (s.id == 0) {
        sceltaScadenza_.reset();
        txtImporto->setTesto("0");
        MostraDovuto(0, 0);
        giaPagato_ = 0;
        Descrivi();
        return;
    }
    const long proprio = contro_ == Contro::Spesa ? s.spesa : s.documento;
    if (contro_ == Contro::Spesa) {
        Elenca(cbDocumenti, payments::SpeseDelFornitore(s.fornitore));
    } else {
        const std::string vista = modo_ == payments::ModoIncasso ? "qrDocumentiIncassi" : "qrDocumentiPagamenti";
        std::string sql = "Select * from " + vista + " where Cliente=" + std::to_string(s.cliente);
        if (modo_ != payments::ModoIncasso) sql += " and Fornitore=" + std::to_string(s.fornitore);
        Elenca(cbDocumenti, sql + " and DaPagare<>0");
    }
    Scegli(cbDocumenti, proprio);
    scelto_ = DovutoDa(cbDocumenti, false, contro_);
    if (scelto_->id == 0) scelto_ = contro_ == Contro::Spesa ? payments::LeggiSpesa(proprio)
                                                              : payments::LeggiDocumento(proprio, modo_);
    if (contro_ == Contro::Documento) Scegli(cbCliente, scelto_ ? scelto_->cliente : 0);
    Scegli(cbFornitore, scelto_ ? scelto_->fornitore : 0);
    sceltaScadenza_ = s;
    MostraDovuto(s.pagato, s.daPagare);
    giaPagato_ = s.pagato;
    txtImporto->setTesto(store::NumberText(s.daPagare));
    Descrivi();
}

// An amount of 0 cannot be confirmed; any other brings the description in line.
void EditorPagamento::ImportoCambiato() {
    btnConferma->setEnabled(txtImporto->numero() != 0);
    if (!caricamento_ && txtImporto->numero() != 0) Descrivi();
}

// Only with a document or expense picked, and then whatever the user typed.
void EditorPagamento::Descrivi() {
    if (!scelto_ || scelto_->id == 0) {
        txtDescrizione->clear();
        return;
    }
    txtDescrizione->setText(Q(payments::DescrizioneProposta(txtImporto->numero(), scelto_->daPagare, giaPagato_,
                                                            nuovo(), scelto_->descrizione)));
}

bool EditorPagamento::Valida() {
    payments::PagamentoDaControllare p;
    p.contro = contro_;
    p.nuovo = nuovo();
    p.dataVuota = pkData->vuoto();
    p.dataValida = pkData->dataValida();
    p.data = pkData->testo();
    p.cliente = cbCliente ? idDi(cbCliente->valore()) : 0;
    p.fornitore = idDi(cbFornitore->valore());
    p.documento = idDi(cbDocumenti->valore());
    p.scadenza = idDi(cbScadenze->valore());
    const std::string importo = core::Trim(txtImporto->testo());
    p.importoLeggibile = importo.empty() || store::ParseNumberText(importo).has_value();
    p.importo = txtImporto->numero();
    p.scelto = scelto_;
    p.sceltaScadenza = sceltaScadenza_;
    p.giaPagato = giaPagato_;
    std::string esito = payments::ControllaPagamento(p);
    if (esito.empty()) {
        payments::Pagamento daScrivere;
        daScrivere.contro = contro_;
        daScrivere.documento = daScrivere.spesa = p.documento;
        daScrivere.scadenza = p.scadenza;
        esito = payments::MotivoNonRegistrabile(daScrivere);
    }
    if (esito.empty()) return true;
    core::MsgBox(core::Didascalia(esito), core::vbExclamation);
    if (esito == "s219" || esito == "s220" || esito.find("data") != std::string::npos) pkData->casella()->setFocus();
    else if (esito == "s224" || esito == "s225" || esito == "s232" || esito.find("importo") != std::string::npos)
        txtImporto->setFocus();
    else if (esito == "s223" || esito == "s231") cbScadenze->setFocus();
    else cbDocumenti->setFocus();
    return false;
}

long EditorPagamento::Salva() {
    payments::Pagamento p;
    p.id = nuovo() ? 0 : id();
    p.modo = modo_;
    p.contro = contro_;
    p.data = store::CDate(pkData->valore());
    p.descrizione = txtDescrizione->text().toStdString();
    p.importo = txtImporto->numero();
    p.tipoPagamento = txtPagamento->text().toStdString();
    p.cc = txtCC->text().toStdString();
    p.numeroAssegno = VText2->text().toStdString();
    p.cliente = cbCliente ? idDi(cbCliente->valore()) : 0;
    p.fornitore = idDi(cbFornitore->valore());
    (contro_ == Contro::Spesa ? p.spesa : p.documento) = idDi(cbDocumenti->valore());
    p.scadenza = idDi(cbScadenze->valore());
    p.destinazione = cbDest->currentIndex();
    return payments::RegistraPagamento(p);
}
