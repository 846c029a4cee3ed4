// Engine errors carry the platform's number and an Italian text; screens show both.
#pragma once

#include <stdexcept>
#include <string>

namespace store {

// The error numbers the engine raises, by what they mean. They are the platform's own numbers: screens
// show them and the program's handlers test them, so a number never changes.
namespace err {
// Run-time errors of expressions and of the program's objects.
inline constexpr int ChiamataNonValida = 5;
inline constexpr int Overflow = 6;
inline constexpr int MemoriaEsaurita = 7;
inline constexpr int DivisionePerZero = 11;
inline constexpr int TipoNonCorrispondente = 13;
inline constexpr int FileNonTrovato = 53;
inline constexpr int FileGiaEsistente = 58;
inline constexpr int AccessoPercorsoNegato = 75;
inline constexpr int OggettoNonImpostato = 91;
inline constexpr int CriterioNonValido = 93;
inline constexpr int UsoNonValidoDiNull = 94;
// Database engine errors.
inline constexpr int ErroreRiservato = 3000;
inline constexpr int ArgomentoNonValido = 3001;
inline constexpr int TabellaGiaEsistente = 3010;
inline constexpr int OggettoGiaEsistente = 3012;
inline constexpr int AggiornamentoSenzaModifica = 3020;
inline constexpr int NessunRecordCorrente = 3021;
inline constexpr int ValoriDuplicati = 3022;
inline constexpr int FileDatabaseNonTrovato = 3024;
inline constexpr int SolaLettura = 3027;
inline constexpr int ErroreDiscoORete = 3043;
inline constexpr int PercorsoNonValido = 3044;
inline constexpr int FileGiaInUso = 3045;
inline constexpr int DatabaseNonRiconosciuto = 3049;
inline constexpr int FileApertoInEsclusiva = 3051;
inline constexpr int ChiavePrimariaNull = 3058;
inline constexpr int ParametriInsufficienti = 3061;
inline constexpr int SelezioneNonEseguibile = 3065;
inline constexpr int SintassiEspressione = 3075;
inline constexpr int TabellaOQueryNonTrovata = 3078;
inline constexpr int CampoAmbiguo = 3079;
inline constexpr int FunzioneNonDefinita = 3085;
inline constexpr int EliminazioneImpossibile = 3086;
inline constexpr int AggregazioneInWhere = 3096;
inline constexpr int NomeNonValido = 3125;
inline constexpr int CampoDestinazioneSconosciuto = 3127;
inline constexpr int IstruzioneNonValida = 3129;
inline constexpr int SintassiFrom = 3131;
inline constexpr int SintassiInsertInto = 3134;
inline constexpr int SintassiJoin = 3135;
inline constexpr int SintassiOrderBy = 3138;
inline constexpr int SintassiSelect = 3141;
inline constexpr int CaratteriDopoIstruzione = 3142;
inline constexpr int SintassiUpdate = 3144;
inline constexpr int SegnalibroNonValido = 3159;
inline constexpr int CampoTroppoPiccolo = 3163;
inline constexpr int CampoNonAggiornabile = 3164;
inline constexpr int RecordEliminato = 3167;
inline constexpr int CampoDefinitoPiuVolte = 3191;
inline constexpr int ModificaConcorrente = 3197;
inline constexpr int DatabaseGiaEsistente = 3204;
inline constexpr int TabellaBloccata = 3211;
inline constexpr int RecordBloccato = 3218;
inline constexpr int OperazioneNonValida = 3219;
inline constexpr int BloccatoDaAltroComputer = 3260;
inline constexpr int NessunCampoDefinito = 3264;
inline constexpr int ElementoNonTrovato = 3265;
inline constexpr int SintassiCreateTable = 3290;
inline constexpr int SintassiDefinizioneCampo = 3292;
inline constexpr int SintassiAlterTable = 3293;
inline constexpr int SintassiDrop = 3295;
inline constexpr int ColonneUnioneDiverse = 3307;
inline constexpr int ValoreRichiesto = 3314;
inline constexpr int StringaVuotaNonAmmessa = 3315;
inline constexpr int RegolaDiConvalida = 3317;
inline constexpr int SintassiUnione = 3319;
inline constexpr int RecordsetNonAggiornabile = 3326;
inline constexpr int NumeroValoriDiverso = 3346;
inline constexpr int QueryTroppoComplessa = 3360;
inline constexpr int OggettoNonValido = 3420;
inline constexpr int TipoNonCorrispondenteCriterio = 3464;
}  // namespace err

class JetError : public std::runtime_error {
public:
    JetError(int number, const std::string& text) : std::runtime_error(text), number_(number) {}
    int number() const { return number_; }

private:
    int number_;
};

// The Italian text of an error number ("" for a number the engine never raises).
std::string errorText(int number);

// Throws JetError(number) with its standard text; a non-empty detail is put where the platform
// names the item (a table, a field, a function) or appended after a colon.
[[noreturn]] void raise(int number, const std::string& detail = {});

}  // namespace store
