#include "sales/screens/frmServizi.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QVBoxLayout>

#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "sales/campi.h"
#include "store/convert.h"
#include "ui/Dettaglio.h"
#include "ui/VBars.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

}  // namespace

frmServizi::frmServizi(QWidget* parent) : RegistroBase(Nome, parent) {
    const core::TabellaCampi& campi = sales::CampiServizi();
    ui::VBars* p = aggiungiPannello();
    const int generale = p->aggiungiGruppo(core::Testo("s142"));
    for (const char* nome : {"DescServizio", "DescIva", "CodiceInterno", "Sconto1"}) {
        const core::Campo& c = campi[nome];
        p->aggiungiCampo(generale, c.nome, core::Didascalia(c.didascalia), c.maschera);
    }
    p->aggiungiCampo(generale, "CostoUnitario", core::Testo("s249"), "#,0.00");
    p->aggiungiCampo(generale, "NonStampare", "Non Stampare");

    Definizione d;
    d.titolo = "Servizi";
    d.sorgente = "Select * from qrServizi";
    d.ordinamento = "DescServizio";
    d.campi = &campi;
    d.colonne = {"DescServizio", "CostoUnitario"};
    d.ricerca = {"DescServizio", "CodiceInterno"};
    d.guardia = ui::Guardia{"Servizio", {{"Movimenti", "s148"}}};
    d.domandaElimina = [](store::Recordset& rs) {
        return core::Testo("s245") + " " + store::ConcatText(rs.get("DescServizio")) + "?";
    };
    d.editor = [](QWidget* parent) { return std::make_unique<frmServiziEdita>(parent); };
    // A filtered list prints filtered; the services marked out stay off the paper only.
    d.sezioneStampa = "Servizi";
    d.elencoStampa = [](const std::string& istruzione) {
        return "Select * from (" + istruzione + ") Where NonStampare=False";
    };

    ui::DefinizioneDettaglio m;
    m.nome = "GridMovimenti";
    m.righe = [](long id) { return "Select * from qrMovimentiEx where Servizio=" + std::to_string(id); };
    m.vuota = "Select * from qrMovimentiEx where ID=-1";
    m.campi = &sales::CampiSchedeCliente();
    m.colonne = {"Data", "DescNum", "Quantita", "PrezzoUnitario", "Importo", "Destinatario"};
    GridMovimenti = aggiungiDettaglio(m);
    GridMovimenti->griglia()->aggiungiGruppo("Destinatario");

    // The field panel and the sales of the row, as two tabs beside the list, under the row's name.
    lblDesc2 = new QLabel(this);
    lblDesc2->setObjectName("lblDesc2");
    lblDesc2->setProperty("DataField", "DescServizio");
    QFont f = lblDesc2->font();
    f.setBold(true);
    lblDesc2->setFont(f);
    Grid->aggiungiSeguace(lblDesc2);
    sTab = new QTabWidget(this);
    sTab->setObjectName("sTab");
    auto* destra = new QWidget(this);
    auto* l = new QVBoxLayout(destra);
    l->setContentsMargins(0, 0, 0, 0);
    l->addWidget(lblDesc2);
    l->addWidget(sTab, 1);
    for (int i = 0; i < layout()->count(); ++i)
        if (auto* c = qobject_cast<QBoxLayout*>(layout()->itemAt(i)->layout()); c && c->indexOf(Grid) >= 0) {
            c->removeWidget(VisCampi);
            c->addWidget(destra, 1);
        }
    sTab->addTab(VisCampi, Q(core::Testo("s142")));
    sTab->addTab(GridMovimenti, "Movimenti");

    carica(std::move(d));
    // The search runs as the text is typed.
    connect(txtCerca, &QLineEdit::textChanged, this, &RegistroBase::Cerca);
    resize(1100, 600);
}

frmServiziEdita::frmServiziEdita(QWidget* parent)
    : EditorBase(Nome, "Servizi", core::Testo("s39"), parent),
      VText1(new ui::VText(this)),
      VText11(new ui::VText(this)),
      txtPrezzoBase(new ui::VText(this)),
      cbIva(new ui::VetraCombo(this)),
      Check1(new QCheckBox("Non Stampare", this)) {
    const core::TabellaCampi& campi = sales::CampiServizi();
    VText1->setObjectName("VText1");
    VText1->setMinimumWidth(360);
    aggiungiCampo(campi["DescServizio"], VText1);
    VText11->setObjectName("VText11");
    VText11->setMaximumWidth(160);
    aggiungiCampo(campi["CodiceInterno"], VText11);
    txtPrezzoBase->setObjectName("txtPrezzoBase");
    txtPrezzoBase->setNumerico(true);
    txtPrezzoBase->setMaschera("#,0.000");
    txtPrezzoBase->setPredefinito("0,000");
    txtPrezzoBase->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    txtPrezzoBase->setMaximumWidth(120);
    txtPrezzoBase->setProperty("DataField", "CostoUnitario");
    aggiungiCampo("Costo Prestazione", txtPrezzoBase);
    cbIva->setObjectName("cbIva");
    cbIva->setSorgente("Select * from CodiciIva order by DescIva");
    cbIva->setColonne({{"DescIva", core::Testo("s127"), 1200}, {"AliquotaIva", core::Testo("s190"), 1000}});
    cbIva->setProperty("DataField", "CodiceIva");
    cbIva->Aggiorna();
    aggiungiCampo(Q(core::Testo("s158")), conImmagini(cbIva, FabbricaEditorDi("frmCodiciIvaEdita")));
    Check1->setObjectName("Check1");
    Check1->setProperty("DataField", "NonStampare");
    aggiungiCampo(QString(), Check1);
}

bool frmServiziEdita::Valida() {
    if (!richiesto(VText1, "s140")) return false;
    const store::Value iva = cbIva->valore();
    if (iva.isNull() || !iva.isNumeric() || store::CLng(iva) == 0) {
        core::MsgBox(core::Testo("s250"), core::vbExclamation);
        cbIva->setFocus();
        return false;
    }
    return true;
}
