#include "steps.h"

namespace ostrel::simulator {
namespace {

TEST(Language, CalculatesAndPrintsNumbers) {
  ExpectAnswers({
      {"2,3,-,!", "-1"},
      {" -40 , 4 ,*, ! ", "-160"},
      {"1,3,/,!", "0.3333333333"},
      {"0.1,0.2,+,!", "0.3"},
      {"1E6,!", "1000000"},
      {"1e-7,!", "0.0000001"},
      {"+.50,!", "0.5"},
      {"0,-1,*,!", "0"},
      {"20000,3,3,SQRT,*,*,1E6,/,3,*,!", "0.3117691454"},
      {"2,^,*,!", "4"},
      {"1,2,dr,!", "1"},
      {"2,1,<,!,2,2,<=,!,2,1,>,!,2,2,>=,!,2,2,=,!,2,2,<>,!", "0\r\n1\r\n1\r\n1\r\n1\r\n0"},
      {"2.0.13,2.0.9,>,!,2.4,2.4.0,=,!,2.0.13,!", "1\r\n1\r\n2.0.13"},
      {"inf,!", "<<unknown: inf>>"},
      {"1E999,!", "<<unknown: 1E999>>"},
      {"1E300,1E300,*", "<<number out of range>>"},
      {"-1,sqrt", "<<number out of range>>"},
      {"1,0,/,!", "<<division by zero>>"},
      {"station-,1,+", "<<not a number: Umspannwerk Nord T1>>"},
  });
}

TEST(Language, PrintsTextsOnLinesOrJoined) {
  ExpectAnswers({
      {"!\"a,b;c\"", "a,b;c"},
      {"1,!,2,!+,!+\";\",3,!", "12;\r\n3"},
      {"!\"AA:<direct>\",dirn", "AA:<direct>\r\nAA:Umspannwerk Nord T1"},
      {"AA:dirn_,!+\";\",ver.+", "AA:Umspannwerk Nord T1;KT-X+;V2.27"},
      {"station#,!,ver.,!+", "Umspannwerk Nord T1\r\nKT-X+;V2.27"},
      {"5,station#,!,!", "Umspannwerk Nord T1\r\n5"},
      {"5,\"a\",!", "a\r\n5"},
      {"", ""},
      {";,, ,", ""},
      {"!\"open", "<<missing \">>"},
      {"\"a\"b", "<<unknown: \"a\"b>>"},
  });
}

TEST(Language, BranchesAndLoops) {
  ExpectAnswers({
      {"1,if,\"y\",else,\"n\",eif", "y"},
      {"0,if,\"y\",else,\"n\",eif", "n"},
      {"0,if,foo,else,1,if,\"in\",eif,eif", "in"},
      {"1,3,fori,i,!,ni", "1\r\n2\r\n3"},
      {"FORI -1..1,I,!,NI", "-1\r\n0\r\n1"},
      {"3,1,fori,i,!,ni,\"end\"", "end"},
      {"fori 1..2,fori 5..6,i,!,ni,i,!,ni", "5\r\n6\r\n1\r\n5\r\n6\r\n2"},
      {"AA:,VER?-,^,if,VER- QOL,else,0,eif,!", "134"},
      {"B1:,VER?-,^,if,VER- QOL,else,0,eif,!", "0"},
      {"1,if", "<<missing eif>>"},
      {"1,2,fori,i", "<<missing ni>>"},
      {"1,2,fori,1,if,ni,eif", "<<missing eif>>"},
      {"else", "<<unexpected else>>"},
      {"ni", "<<unexpected ni>>"},
      {"1,if,1,else,2,else,3,eif", "<<missing eif>>"},
      {"i,!", "<<no loop>>"},
      {"1,fori,ni", "<<stack empty>>"},
      {"0.5,2,fori,ni", "<<loop bound: 0.5>>"},
      {"fori 1..x,ni", "<<loop bound: x>>"},
      {"fori 5,ni", "<<loop bound: 5>>"},
  });
}

TEST(Language, AnswersFaultsAlone) {
  ExpectAnswers({
      {"\"before\",Foo", "<<unknown: foo>>"},
      {"foo#", "<<unknown: foo>>"},
      {"dr 5", "<<unknown: dr>>"},
      {"+", "<<stack empty>>"},
      {"station=\"x\"", "<<read-only: station>>"},
      {"RegTAPSTATCL#", "<<write-only: regtapstatcl>>"},
      {"RegTAPSTATCL=0", "<<all (*) is missing>>"},
      {"RegTAPSTATCL*=1", "<<value out of range>>"},
      {"RegTAPSTATCL*=", "<<value out of range>>"},
      {"passwort- 6", "<<index out of range>>"},
      {"a\rb", "<<character not allowed>>"},
  });
}

TEST(Language, EveryLineEndsInBoundedTimeAndSize) {
  ExpectAnswers({
      {"fori 1..99999,fori 1..99999,1,dr,ni,ni", "<<too many steps>>"},
      {"0,1E10,fori,ni", "<<loop bound: 10000000000>>"},
      {"1,9999,fori,i,ni", "<<stack full>>"},
      {"1,9999,fori,\"" + std::string(80, 'x') + "\",ni", "<<output too long>>"},
      {"1,2000,fori,RegTAPSTAT# 120 -60,ni", "<<output too long>>"},
      {Times(17, "fori 1..9,") + Times(17, "ni,"), "<<nested too deep>>"},
      {Times(800, "1,if,"), "<<nested too deep>>"},
      {Times(800, "1,dr,") + "\"end\"", "end"},
      {"fori 1..9999,fcreate! = a,fapph a " + Times(2000, "41") + ",ni", "<<too many steps>>"},
      {std::string(4097, ' '), ""},
      {"\"" + std::string(4096, 'x') + "\"", "<<line too long>>"},
      {std::string(4000, 'x'), "<<unknown: " + std::string(40, 'x') + ">>"},
      {Times(4095, "\""), "<<missing \">>"},
      {Times(800, "1.") + "1,dr", "<<unknown: " + Times(20, "1.") + ">>"},
  });
}

}  // namespace
}  // namespace ostrel::simulator
