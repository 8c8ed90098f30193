// The first block: captions and messages of the pages.

#include "base/string_table.h"
#include "base/texts.h"

namespace ostrel {

namespace {

constexpr TableEntry kTable[] = {
    {text::kOk, {"&OK", "&OK", "&OK"}},
    {text::kCancel, {"&Abbrechen", "&Cancel", "&Annuler"}},
    {text::kError, {"Fehler!", "Error!", "Erreur !"}},
    {text::kSuccessful, {"Vorgang erfolgreich.", "Operation successful.", "Opération réussie."}},
    {text::kType, {"Typ", "Type", "Type"}},
    {text::kTransferFinished,
     {"Übertragung erfolgreich beendet.", "Transfer finished successfully.",
      "Transmission terminée avec succès."}},
    {text::kTransferCancelled,
     {"Fehler bei der Übertragung oder Abbruch durch den Benutzer.",
      "Error while transfer or cancel by user.",
      "Erreur de transmission ou annulation par l'utilisateur."}},
    {text::kSaveAs, {"Speichern unter", "Save as", "Enregistrer sous"}},
    {text::kSelectLogFile,
     {"Logdatei der Konsole", "Logfile of the Console", "Fichier journal de la console"}},
    {text::kOpenFile, {"Datei öffnen ...", "Open File ...", "Ouvrir un fichier ..."}},
    {text::kNoFileOpen,
     {"Es ist keine Datei geöffnet.", "No File is opened.", "Aucun fichier n'est ouvert."}},
    {text::kNoErrors, {"Keine Fehler gefunden.", "No Errors found.", "Aucune erreur trouvée."}},
    {text::kRuntimeError, {"Laufzeitfehler", "Runtime Error", "Erreur d'exécution"}},
    {text::kUserNameAndPassword,
     {"Bitte Benutzername und Passwort eingeben.", "Please enter user name and password.",
      "Veuillez saisir le nom d'utilisateur et le mot de passe."}},
    {text::kUserPassword,
     {"Bitte das Passwort des Benutzers eingeben.", "Please enter user's password.",
      "Veuillez saisir le mot de passe de l'utilisateur."}},
    {text::kNewPassword, {"Neues Passwort", "New Password", "Nouveau mot de passe"}},
    {text::kConfirmPassword,
     {"Neues Passwort bestätigen", "Confirm New Password", "Confirmer le nouveau mot de passe"}},
    {text::kPasswordsDiffer,
     {"Die Passwörter stimmen nicht überein. Bitte erneut eingeben.",
      "The Passwords are not equal. Enter again please.",
      "Les mots de passe diffèrent. Veuillez les saisir à nouveau."}},
    {text::kPasswordNotChanged,
     {"Das Passwort wurde weder geändert noch erstmals gesetzt.",
      "Password wasn't changed or initially set.",
      "Le mot de passe n'a été ni modifié ni défini."}},
    {text::kEnterAdminPassword,
     {"Bitte das Passwort des Administrators eingeben.", "Please enter admin password.",
      "Veuillez saisir le mot de passe de l'administrateur."}},
    {text::kDeviceReplied,
     {"Ein Fehler ist aufgetreten. Das Gerät antwortete wie folgt:",
      "An Error has occurred. Device replied as follows:",
      "Une erreur est survenue. Réponse de l'appareil :"}},
    {First(283),
     {"Es wurde eine Antwort verlangt, ohne dass vorher ein Befehl gesendet wurde.",
      "You tried to get an answer without sending a command before.",
      "Une réponse a été demandée sans qu'une commande ait été envoyée."}},
    {text::kNoConnectionToDevice,
     {"Keine Verbindung zum Gerät.", "No Connection to Device.",
      "Pas de liaison avec l'appareil."}},
    {text::kNothingToSend,
     {"Es gibt nichts zu senden.", "There is nothing to send.", "Il n'y a rien à envoyer."}},
    {text::kNoDeviceSelected,
     {"Kein Gerät ausgewählt.", "No Device Selected.", "Aucun appareil sélectionné."}},
    {text::kUserGuest, {"Benutzer 0 (Gast)", "User 0 (Guest)", "Utilisateur 0 (invité)"}},
    {text::kUserAdmin, {"Benutzer 1 (Admin)", "User 1 (Admin)", "Utilisateur 1 (admin)"}},
    {text::kUser2, {"Benutzer 2", "User 2", "Utilisateur 2"}},
    {text::kUser3, {"Benutzer 3", "User 3", "Utilisateur 3"}},
    {text::kUser4, {"Benutzer 4", "User 4", "Utilisateur 4"}},
    {text::kUser5, {"Benutzer 5", "User 5", "Utilisateur 5"}},
    {text::kScriptFilter,
     {"KT-X, KT-XB|*.rgl|LX-X|*.lxl|KT-XF, KT-XFB|*.xfl|QM-X|*.qml;*.qol|WB-X|*.wbl|KT-XW, "
      "KT-XWB|*.xwl;*.rgl|JS-X|*.jsl|NV-X, HZ-X, ein weiterer "
      "Typ|*.xbl|Geräteunabhängig|*.cmd;*.qol|Alle Dateien|*",
      "KT-X, KT-XB|*.rgl|LX-X|*.lxl|KT-XF, KT-XFB|*.xfl|QM-X|*.qml;*.qol|WB-X|*.wbl|KT-XW, "
      "KT-XWB|*.xwl;*.rgl|JS-X|*.jsl|NV-X, HZ-X, one more type|*.xbl|Device "
      "independent|*.cmd;*.qol|All files|*",
      "KT-X, KT-XB|*.rgl|LX-X|*.lxl|KT-XF, KT-XFB|*.xfl|QM-X|*.qml;*.qol|WB-X|*.wbl|KT-XW, "
      "KT-XWB|*.xwl;*.rgl|JS-X|*.jsl|NV-X, HZ-X, un autre type|*.xbl|Indépendant de "
      "l'appareil|*.cmd;*.qol|Tous les fichiers|*"}},
    {text::kLogFilter,
     {"Logdateien (*.log)|*.log", "Logfiles (*.log)|*.log", "Fichiers journaux (*.log)|*.log"}},
    {text::kFirmwareTooOld,
     {"Der gewünschte Vorgang ist mit dieser Firmware-Version noch nicht möglich.",
      "Desired Operation is not yet possible with this Version of Firmware.",
      "L'opération voulue n'est pas encore possible avec cette version du firmware."}},
    {text::kGrantsCurrently,
     {"Sie haben zur Zeit folgende Rechte.", "You have the following grants currently.",
      "Vous avez actuellement les droits suivants."}},
    {text::kLoginForMore,
     {"Melden Sie sich als Benutzer mit höheren Rechten an, wenn Sie mehr tun möchten.",
      "Login as a user with higher grants if you want to do more.",
      "Connectez-vous comme utilisateur disposant de droits plus élevés pour en faire davantage."}},
};
static_assert(Ascending(kTable, First(0), 1000));

}  // namespace

std::span<const TableEntry> FirstBlock() {
  return kTable;
}

}  // namespace ostrel
