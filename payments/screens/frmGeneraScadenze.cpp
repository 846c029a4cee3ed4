#include "payments/screens/frmGeneraScadenze.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QTableWidget>
#include <QVBoxLayout>

#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "store/convert.h"
#include "store/format.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

}  // namespace

frmGeneraScadenze::frmGeneraScadenze(QWidget* parent)
    : QDialog(parent),
      lblDoc(new QLabel(this)),
      lblPagamento(new QLabel(this)),
      lblImportoDoc(new QLabel(this)),
      pkPrimaRata(new ui::VetraPicker(this)),
      chkFineMese(new QCheckBox("Pagamento fine mese", this)),
      txtGiorniAvviso(new QLineEdit("0", this)),
      cbAvviso(new QComboBox(this)),
      Grid(new QTableWidget(0, 5, this)),
      btnConferma(ui::comando("btnConferma", "&Genera", this)),
      btnAnnulla(ui::comando("btnAnnulla", "&Annulla", this)) {
    setObjectName(Nome);
    setModal(true);
    setWindowTitle("Genera scadenze");
    lblDoc->setObjectName("lblDoc");
    lblPagamento->setObjectName("lblPagamento");
    lblImportoDoc->setObjectName("lblImportoDoc");
    pkPrimaRata->setObjectName("pkPrimaRata");
    chkFineMese->setObjectName("chkFineMese");
    txtGiorniAvviso->setObjectName("txtGiorniAvviso");
    txtGiorniAvviso->setValidator(new QRegularExpressionValidator(QRegularExpression("[0-9]*"), txtGiorniAvviso));
    cbAvviso->setObjectName("cbAvviso");
    cbAvviso->addItems({"Giorni Prima", "Giorni Dopo"});
    Grid->setObjectName("Grid");
    Grid->setHorizontalHeaderLabels({Q(core::Testo("s290")), Q(core::Testo("s290")), Q(core::Testo("s198")),
                                     Q(core::Testo("s199")), Q(core::Testo("s171"))});
    const int larghezze[] = {1200, 1200, 800, 800, 1500};
    for (int c = 0; c < 5; ++c) Grid->setColumnWidth(c, ui::TwipsInPixel(larghezze[c]));
    Grid->verticalHeader()->hide();
    Grid->setEditTriggers(QAbstractItemView::NoEditTriggers);

    auto* colonna = new QVBoxLayout(this);
    auto* campi = new QFormLayout;
    campi->addRow("Documento", lblDoc);
    campi->addRow("Pagamento", lblPagamento);
    campi->addRow("Importo", lblImportoDoc);
    campi->addRow("Data Inizio Conteggio", pkPrimaRata);
    campi->addRow("", chkFineMese);
    auto* avviso = new QHBoxLayout;
    avviso->addWidget(txtGiorniAvviso);
    avviso->addWidget(cbAvviso);
    campi->addRow("Avvertire N.", avviso);
    colonna->addLayout(campi);
    colonna->addWidget(Grid, 1);
    auto* comandi = new QHBoxLayout;
    comandi->addStretch(1);
    comandi->addWidget(btnConferma);
    comandi->addWidget(btnAnnulla);
    colonna->addLayout(comandi);
    resize(560, 420);

    auto anteprima = [this] {
        if (!caricamento_) ui::protetto([this] { Costruisci(false); });
    };
    connect(pkPrimaRata, &ui::VetraPicker::cambiato, this, anteprima);
    connect(chkFineMese, &QCheckBox::toggled, this, anteprima);
    connect(txtGiorniAvviso, &QLineEdit::textChanged, this, anteprima);
    connect(cbAvviso, QOverload<int>::of(&QComboBox::currentIndexChanged), this, anteprima);
    connect(btnConferma, &QPushButton::clicked, this, [this] { ui::protetto([this] { Conferma(); }); });
    connect(btnAnnulla, &QPushButton::clicked, this, &QDialog::reject);
}

void frmGeneraScadenze::Carica(long documento) {
    caricamento_ = true;
    documento_ = payments::LeggiDocumentoDaScadenzare(documento);
    payments::CondizionePagamento condizione;
    const bool conTermine = payments::HaCondizionePagamento(documento_);
    if (conTermine) condizione = payments::LeggiCondizionePagamento(documento_.condizioniPagamento);
    iniziale_ = payments::RegolaIniziale(documento_, conTermine ? &condizione : nullptr);
    lblDoc->setText(Q(payments::DidascaliaDocumento(documento_.tipo, documento_.descNum, documento_.data)));
    lblPagamento->setText(Q(condizione.descPagamento));
    lblImportoDoc->setText(Q(store::Format(store::Value::Double(documento_.importoTotale), "#,0.00")));
    pkPrimaRata->setValore(store::Value::Date(iniziale_.dataConteggio));
    chkFineMese->setChecked(iniziale_.fineMese);
    txtGiorniAvviso->setText("0");
    cbAvviso->setCurrentIndex(0);
    caricamento_ = false;
    Costruisci(false);
}

payments::RegolaScadenze frmGeneraScadenze::regola() const {
    payments::RegolaScadenze r = iniziale_;
    if (!pkPrimaRata->valore().isNull()) r.dataConteggio = store::CDbl(pkPrimaRata->valore());
    r.fineMese = chkFineMese->isChecked();
    r.giorniAvviso = txtGiorniAvviso->text().toStdString();
    r.verso = cbAvviso->currentIndex() == 0 ? payments::VersoAvviso::GiorniPrima : payments::VersoAvviso::GiorniDopo;
    return r;
}

std::vector<payments::RataPiano> frmGeneraScadenze::Costruisci(bool scrittura) {
    std::vector<payments::RataPiano> piano = payments::PianoScadenze(regola(), scrittura);
    if (scrittura) {
        payments::ScriviScadenze(documento_, piano);
        return piano;
    }
    Grid->setRowCount(static_cast<int>(piano.size()));
    for (int i = 0; i < static_cast<int>(piano.size()); ++i) {
        const payments::RataPiano& r = piano[static_cast<size_t>(i)];
        const std::string celle[] = {store::DateText(r.dataAvviso), store::DateText(r.dataScadenza),
                                     std::to_string(r.rata), std::to_string(r.rate),
                                     store::Format(store::Value::Double(r.importo), "#,0.00")};
        for (int c = 0; c < 5; ++c) {
            auto* cella = new QTableWidgetItem(Q(celle[c]));
            cella->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            Grid->setItem(i, c, cella);
        }
    }
    return piano;
}

void frmGeneraScadenze::Conferma() {
    Costruisci(true);
    core::MsgBox(core::Testo("s289"), core::vbInformation);
    accept();
}

bool frmGeneraScadenze::Edita(long documento) {
    Carica(documento);
    return ui::eseguiModale(this, [this] { return exec() == QDialog::Accepted; });
}

bool frmGeneraScadenze::Mostra() {
    frmGeneraScadenze g(ui::finestraPrincipale());
    return g.Edita(core::ModoSchermo(Nome));
}
