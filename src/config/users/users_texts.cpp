#include "config/users/users_texts.h"

#include "base/string_table.h"

namespace ostrel {

namespace {

constexpr TableEntry kTable[] = {
    {text::kPasswordProblem,
     {"Das Passwort hat ein nicht erlaubtes Zeichen oder ist leer. Nicht erlaubt sind "
      "Steuerzeichen, Leerzeichen, Anführungszeichen, , ; : = und Zeichen außerhalb von ISO "
      "8859-1.",
      "The password is empty or has a character that is not allowed: control characters, blanks, "
      "quotes, , ; : = and characters outside ISO 8859-1.",
      "Le mot de passe est vide ou contient un caractère non admis : caractères de commande, "
      "espaces, guillemets, , ; : = et caractères hors d'ISO 8859-1."}},
    {text::kRemovePassword,
     {"Das Passwort löschen? %s", "Remove the password? %s", "Supprimer le mot de passe ? %s"}},
    {text::kSendAnyway,
     {"COM2 ist nicht ausgenommen. Trotzdem senden?", "COM2 is not excepted. Send anyway?",
      "COM2 n'est pas exclu. Envoyer malgré tout ?"}},
    {text::kMasterPassword, {"Master-Passwort", "Master Password", "Mot de passe maître"}},
    {text::kUser, {"Benutzer", "User", "Utilisateur"}},
    {text::kPassword, {"Passwort", "Password", "Mot de passe"}},
    {text::kGrant, {"Rechte", "Grant", "Droits"}},
    {text::kTimeoutMinutes, {"Abmeldung (min)", "Timeout (min)", "Délai (min)"}},
    {text::kIsSet, {"gesetzt", "set", "défini"}},
    {text::kLoggedIn, {"Angemeldet: %s", "Logged in: %s", "Connecté : %s"}},
    {text::kGrantInForce, {"Rechte zur Zeit: %s", "Grant in force: %s", "Droits en vigueur : %s"}},
    {text::kLogIn, {"A&nmelden ...", "&Log in ...", "&Connexion ..."}},
    {text::kLogOut, {"A&bmelden", "Log &out", "&Déconnexion"}},
    {text::kSetPassword,
     {"Pass&wort setzen ...", "Set pass&word ...", "Définir le m&ot de passe ..."}},
    {text::kSendSettings,
     {"Ein&stellungen senden ...", "&Send settings ...", "&Envoyer les réglages ..."}},
    {text::kUnprotect,
     {"Schutz au&fheben ...", "Dea&ctivate protection ...", "Lever la pro&tection ..."}},
    {text::kSendExceptions,
     {"Ausnahm&en senden ...", "Send &exceptions ...", "E&nvoyer les exceptions ..."}},
    {text::kFieldUsers, {"Ben&utzer", "&Users", "&Utilisateurs"}},
    {text::kFieldGrant, {"&Rechte", "&Grant", "D&roits"}},
    {text::kFieldTimeout,
     {"Abmeldung nach &Minuten (0 = nie)", "&Timeout in minutes (0 = never)",
      "Délai en &minutes (0 = jamais)"}},
    {text::kFieldUser, {"&Benutzer", "&User", "&Utilisateur"}},
    {text::kFieldPassword, {"&Passwort", "&Password", "&Mot de passe"}},
    {text::kRefresh, {"Akt&ualisieren", "&Refresh", "Act&ualiser"}},
    {text::kLoginTitle, {"Anmelden", "Log in", "Connexion"}},
    {text::kGrantsTitle, {"Rechte", "Grants", "Droits"}},
    {text::kDefinePassword,
     {"Admin-&Passwort festlegen ...", "Define admin &password ...",
      "Définir le &mot de passe admin ..."}},
    {text::kPortExcepted, {"ausgenommen", "excepted", "exclu"}},
    {text::kPortProtected, {"geschützt", "protected", "protégé"}},
    {text::kChooseGrant,
     {"Wählen Sie zuerst die Rechte des Benutzers.", "Choose a grant for the user first.",
      "Choisissez d'abord les droits de l'utilisateur."}},
};
static_assert(Ascending(kTable, Own(400), kTextsOfAFeature));

}  // namespace

std::span<const TableEntry> UsersTexts() {
  return kTable;
}

}  // namespace ostrel
