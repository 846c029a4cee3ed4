#include "sales/totali.h"

#include "payments/saldo.h"
#include "core/archivio_sql.h"
#include "store/convert.h"

namespace sales {

namespace {

// The surcharge's VAT rate belongs to the rule itself, not to any VAT code.
constexpr double kAliquotaMaggiorazione = 20;

// N4 written out in full, so that the engine runs the cascade itself: each step is
// N - N/100*S on what the previous step left, in the same order of operations as NettoScontato.
std::string EspressioneNettoScontato() {
    std::string netto = "[Movimenti].[Importo]";
    for (int i = 1; i <= 4; ++i) {
        const std::string n = i == 1 ? netto : "(" + netto + ")";
        netto = n + "-" + n + "/100*[Documenti].[Sconto" + std::to_string(i) + "]";
    }
    return netto;
}

const std::string& NettoRigaSql() {
    static const std::string testo = "Sum(Round(" + EspressioneNettoScontato() + ",2)) AS Netto1";
    return testo;
}

const std::string& ImpostaRigaSql() {
    static const std::string testo =
        "Sum(Round((" + EspressioneNettoScontato() + ")/100*[CodiciIva].[AliquotaIva],2)) AS Imposta1";
    return testo;
}

const char* const kFromMovimenti =
    "FROM (Movimenti LEFT JOIN Documenti ON Movimenti.Documento = Documenti.ID) "
    "LEFT JOIN CodiciIva ON Movimenti.Iva = CodiciIva.ID ";
const char* const kFromSpese =
    "FROM (SpeseDocumenti LEFT JOIN Documenti ON SpeseDocumenti.Documento = Documenti.ID) "
    "LEFT JOIN CodiciIva ON SpeseDocumenti.Iva = CodiciIva.ID ";
const char* const kImponibileSpese = "Sum(Round([SpeseDocumenti].[Imponibile],2))";
const char* const kImpostaSpese = "Sum(Round([SpeseDocumenti].[Imponibile]/100*[CodiciIva].[AliquotaIva],2))";

std::string PeriodoDocumenti(double dal, double al) {
    return "DateValue(Documenti.Data)>=DateValue('" + core::DataSql(dal) + "') And DateValue(Documenti.Data)<=DateValue('" +
           core::DataSql(al) + "')";
}

SommeRighe LeggiSommeRighe(long documento) {
    auto rs = core::Apri(SqlTotaliMovimenti(documento));
    SommeRighe somme;
    if (rs->Eof()) return somme;
    somme.presente = true;
    somme.netto = core::NumeroOpzionale(rs->get("Netto"));
    somme.imposta = core::NumeroOpzionale(rs->get("Imposta"));
    somme.imponibile = core::NumeroOpzionale(rs->get("Imponibile"));
    return somme;
}

void ScriviTotali(store::Recordset& rs, const TotaliDocumento& t) {
    rs.set("Imponibile", store::Value::Double(t.imponibile));
    rs.set("TotIva", store::Value::Double(t.totIva));
    rs.set("TotNetto", store::Value::Double(t.totNetto));
    rs.set("TotSpese", store::Value::Double(t.totSpese));
    rs.set("TotRitenutaAcconto", store::Value::Double(t.totRitenutaAcconto));
    rs.set("ImportoTotale", store::Value::Double(t.importoTotale));
}

}  // namespace

double NettoScontato(double importo, const Sconti& sconti) {
    double n = importo;
    for (double s : {sconti.s1, sconti.s2, sconti.s3, sconti.s4}) n = n - n / 100 * s;
    return n;
}

RigaCalcolata CalcolaRiga(double importo, const Sconti& sconti, std::optional<double> aliquota) {
    const double n4 = NettoScontato(importo, sconti);
    RigaCalcolata riga;
    riga.netto = store::Round(n4, 2);
    if (aliquota) riga.imposta = store::Round(n4 / 100 * *aliquota, 2);
    return riga;
}

TotaliDocumento ComponiTotali(const SommeRighe& righe, double spese, const DatiTestata& testata) {
    double imposta = 0, imponibile = 0, netto = 0, ritenuta = 0, maggiorazione = 0;
    if (righe.presente) {
        imposta = store::Round(righe.imposta.value_or(0), 2);
        imponibile = store::Round(righe.imponibile.value_or(0), 2);
        netto = store::Round(righe.netto.value_or(0), 2);
        ritenuta = netto / 100 * testata.ritenutaAcconto;
        maggiorazione = netto / 100 * testata.maggiorazione;
    }
    TotaliDocumento t;
    t.totSpese = spese;
    t.imponibile = imponibile + maggiorazione;
    t.totNetto = netto + maggiorazione;
    t.totIva = maggiorazione / 100 * kAliquotaMaggiorazione + imposta;
    t.totRitenutaAcconto = ritenuta;
    t.importoTotale = t.totIva + t.totNetto + t.totSpese - t.totRitenutaAcconto;
    return t;
}

std::string SqlTotaliMovimenti(long documento) {
    return "SELECT Sum(Netto1) AS Netto, Sum(Imposta1) AS Imposta, Sum(Imponibile1) AS Imponibile FROM "
           "(SELECT Documenti.ID, Sum(Round([Importo],2)) AS Imponibile1, " +
           NettoRigaSql() + ", " + ImpostaRigaSql() + " " + kFromMovimenti +
           "GROUP BY Documenti.ID Having (((Documenti.ID) = " + std::to_string(documento) + ")))";
}

std::string SqlRiepilogoIvaDocumento(long documento) {
    const std::string id = std::to_string(documento);
    return "SELECT ID, DescIva, Doc, Iva, Sum(Netto1) AS Netto, Sum(Imposta1) AS Imposta, "
           "Sum(Imponibile1) AS Imponibile FROM ("
           "SELECT Documenti.ID AS Doc, Movimenti.Iva, Sum(Round([Importo],2)) AS Imponibile1, CodiciIva.DescIva, " +
           NettoRigaSql() + ", " + ImpostaRigaSql() + ", CodiciIva.ID " + kFromMovimenti +
           "GROUP BY Documenti.ID, Movimenti.Iva, CodiciIva.DescIva, CodiciIva.ID "
           "Having (((Documenti.ID) = " + id + ")) "
           "UNION SELECT Documenti.ID AS Doc, SpeseDocumenti.Iva, " + kImponibileSpese +
           " AS Imponibile, CodiciIva.DescIva, " + kImponibileSpese + " AS Netto, " + kImpostaSpese +
           " AS Imposta, CodiciIva.ID " + kFromSpese +
           "GROUP BY Documenti.ID, SpeseDocumenti.Iva, CodiciIva.DescIva, CodiciIva.ID "
           "HAVING (((Documenti.ID)=" + id + "))) GROUP BY ID, DescIva, Doc, Iva";
}

std::string SqlIvaPeriodo(long tipo, double dal, double al) {
    const std::string t = std::to_string(tipo);
    return "Select Round(Sum(Netto1),2) as Imponibile, Round(Sum(Imposta1),2) as Imposta from (SELECT " +
           NettoRigaSql() + ", " + ImpostaRigaSql() + " " + kFromMovimenti + "Where Documenti.Tipo = " + t +
           " And " + PeriodoDocumenti(dal, al) + " Union SELECT " + kImponibileSpese + " AS Netto1, " +
           kImpostaSpese + " AS Imposta1 " + kFromSpese + "WHERE Documenti.Tipo=" + t + " AND " +
           PeriodoDocumenti(dal, al) + ")";
}

double TotaleSpeseDocumento(long documento) {
    auto rs = core::Apri(std::string("SELECT Documenti.ID, ") + kImponibileSpese + " AS Imponibile1, " + kImpostaSpese +
                   " AS Imposta1 " + kFromSpese + "GROUP BY Documenti.ID HAVING (((Documenti.ID)=" +
                   std::to_string(documento) + "))");
    if (rs->Eof()) return 0;
    return core::NumeroOZero(rs->get("Imponibile1")) + core::NumeroOZero(rs->get("Imposta1"));
}

void CalcolaTotaliDocumento(long documento, store::Recordset* griglia) {
    core::CursoreOccupato cursore;
    auto rs = core::Apri("Select * from qrDocumenti where ID=" + std::to_string(documento));
    if (rs->Eof()) return;
    const DatiTestata testata{core::NumeroOZero(rs->get("RitenutaAcconto")), core::NumeroOZero(rs->get("Maggiorazione"))};
    const SommeRighe righe = LeggiSommeRighe(documento);
    const TotaliDocumento totali = ComponiTotali(righe, TotaleSpeseDocumento(documento), testata);

    long daAggiornare = documento;
    if (griglia) {
        griglia->Edit();
        ScriviTotali(*griglia, totali);
        griglia->Update();
        daAggiornare = store::CLng(griglia->get("ID"));
    } else {
        rs->Edit();
        ScriviTotali(*rs, totali);
        rs->Update();
        rs->setBookmark(rs->LastModified());
    }
    payments::AggiornaPagatoDocumento(daAggiornare);
}

}  // namespace sales
