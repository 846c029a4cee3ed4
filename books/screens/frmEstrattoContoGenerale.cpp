#include "books/screens/frmEstrattoContoGenerale.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <memory>

#include "books/estratto.h"
#include "core/archivio_sql.h"
#include "core/stampa.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/Progresso.h"
#include "ui/Stile.h"
#include "ui/VetraPicker.h"

namespace {

double Data(const ui::VetraPicker* p) { return p->dataValida() ? store::DateValue(p->valore()) : 0.0; }

}  // namespace

void GeneraEstrattoConProgresso(long intestatario, long tipo, bool soloAperte, double dal, double al, bool gruppi) {
    std::unique_ptr<ui::Progresso> progresso;
    books::GeneraEstratto(intestatario, tipo, soloAperte, dal, al, gruppi, [&](long posizione, long totale) {
        if (!progresso) {
            progresso = std::make_unique<ui::Progresso>("Generazione estratto ...", ui::finestraPrincipale());
            progresso->setMassimo(static_cast<int>(totale));
            progresso->show();
        }
        progresso->avanza(static_cast<int>(posizione));
    });
}

frmEstrattoContoGenerale::frmEstrattoContoGenerale(QWidget* parent) : QDialog(parent) {
    setObjectName(Nome);
    setWindowTitle("Estratto conto fornitori");
    setWindowIcon(ui::icona("x-office-document"));
    auto* colonna = new QVBoxLayout(this);
    ui::impostaSpaziatura(colonna);

    auto* riquadro = new QGroupBox("Periodo (opzionale)", this);
    auto* periodo = new QHBoxLayout(riquadro);
    pkDal = new ui::VetraPicker(riquadro);
    pkDal->setObjectName("pkDal");
    pkAl = new ui::VetraPicker(riquadro);
    pkAl->setObjectName("pkAl");
    const std::pair<const char*, ui::VetraPicker*> date[] = {{"&Dal", pkDal}, {"A&l", pkAl}};
    for (const auto& [testo, picker] : date) {
        auto* etichetta = new QLabel(testo, riquadro);
        etichetta->setBuddy(picker);
        periodo->addWidget(etichetta);
        periodo->addWidget(picker);
    }
    periodo->addStretch(1);
    colonna->addWidget(riquadro);

    chkPartiteAperte = new QCheckBox("Solo &partite aperte", this);
    chkPartiteAperte->setObjectName("chkPartiteAperte");
    colonna->addWidget(chkPartiteAperte);
    colonna->addStretch(1);

    auto* pulsanti = new QHBoxLayout;
    btnConferma = ui::comando("btnConferma", "&Genera", this);
    btnConferma->setDefault(true);
    btnAnnulla = ui::comando("btnAnnulla", "&Chiudi", this);
    pulsanti->addStretch(1);
    pulsanti->addWidget(btnConferma);
    pulsanti->addWidget(btnAnnulla);
    colonna->addLayout(pulsanti);

    connect(btnConferma, &QPushButton::clicked, this, [this] { ui::protetto([this] { Genera(); }); });
    connect(btnAnnulla, &QPushButton::clicked, this, [this] { reject(); });
    resize(460, 200);
}

// Made and printed at once: the print reads the rows grouped by supplier, each by date.
void frmEstrattoContoGenerale::Genera() {
    {
        core::CursoreOccupato occupato;
        GeneraEstrattoConProgresso(0, books::EstrattoFornitore, chkPartiteAperte->isChecked(), Data(pkDal), Data(pkAl),
                                   true);
    }
    core::RichiestaStampa r;
    r.sezione = "EstrattoContoGeneraleGruppi";
    r.subReports.Add("Elenco", "Select * from Estratto Where Tipo=1 Order By DescFornitore, Fornitore, Data");
    r.parametri = core::Parametri::Nessuno();
    core::Stampa(r);
}
