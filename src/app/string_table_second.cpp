// The second block: what the communication server reports, and more messages of the pages.

#include "app/string_table.h"
#include "app/texts.h"

namespace ostrel {

namespace {

constexpr TableEntry kTable[] = {
    {Second(11),
     {"Die höchste Anzahl von Kanälen auf dieser Schnittstelle ist erreicht.",
      "Maximum count of channels on this port has reached.",
      "Le nombre maximal de canaux sur ce port est atteint."}},
    {Second(12),
     {"Zeitüberschreitung! Das Gerät hat nicht geantwortet.", "Timeout! Device did not reply.",
      "Temps dépassé ! L'appareil n'a pas répondu."}},
    {Second(13),
     {"Die Schnittstelle konnte nicht geöffnet werden.", "Open Port Failure",
      "Échec de l'ouverture du port"}},
    {Second(14), {"Fehler beim Senden", "Send Error", "Erreur d'émission"}},
    {Second(15), {"Fehler beim Empfangen", "Receive Error", "Erreur de réception"}},
    {Second(16),
     {"Diese Version kann keine Verbindung über ein Modem herstellen.",
      "This version is not able to connect via modem.",
      "Cette version ne permet pas de liaison par modem."}},
    {Second(17),
     {"Die Antwort ist zu groß für diesen Befehl.", "The answer is too big for this command.",
      "La réponse est trop longue pour cette commande."}},
    {Second(18),
     {"Der einzige verfügbare Online-Kanal ist auf dieser Verbindung bereits geöffnet.",
      "The only available Online Channel is already open on this Connection.",
      "Le seul canal en ligne disponible est déjà ouvert sur cette liaison."}},
    {Second(19),
     {"Auf dieser Verbindung ist ein Online-Kanal aktiv.",
      "An Online Channel is active on this Connection.",
      "Un canal en ligne est actif sur cette liaison."}},
    {Second(20),
     {"Dieser Vorgang ist nur mit einem Online-Kanal möglich.",
      "This operation is only possible with an online channel.",
      "Cette opération n'est possible qu'avec un canal en ligne."}},
    {Second(21),
     {"Der Online-Kanal konnte nicht umgeschaltet werden.", "Online Channel switch failure.",
      "Échec de la commutation du canal en ligne."}},
    {Second(22),
     {"ZubServer hat offene Kanäle festgestellt. Wenn noch Programme laufen: bitte beenden. Nach "
      "einem Absturz: den Server in der Prozessliste (Strg-Alt-Entf) beenden oder warten, bis er "
      "sich selbst beendet hat.",
      "ZubServer has detected open channels. If there are applications running: Please terminate "
      "them. If there was an abort: Terminate the server by the task list (ctrl-alt-del) or wait "
      "until the server has terminated itself.",
      "ZubServer a trouvé des canaux ouverts. Si des programmes sont en cours : veuillez les "
      "fermer. Après un arrêt anormal : terminez le serveur par la liste des tâches "
      "(ctrl-alt-suppr) ou attendez qu'il se termine de lui-même."}},
    {Second(23),
     {"Überlauf im FIFO der seriellen Schnittstelle. Dadurch sind Zeichen verloren gegangen.",
      "Overrun at the UART's FIFO. Characters have been lost therefore.",
      "Débordement de la FIFO de l'UART. Des caractères ont été perdus."}},
    {Second(24),
     {"Ein KT-Y-Befehl kann erst gesendet werden, wenn der vorige Befehl abgearbeitet ist.",
      "A KT-Y command can be sent only, until the preceding command has been processed.",
      "Une commande KT-Y ne peut être envoyée qu'une fois la commande précédente traitée."}},
    {Second(25),
     {"Beim Schließen der Schnittstelle ist ein Fehler aufgetreten.",
      "An Error occurred when closing the port.",
      "Une erreur est survenue à la fermeture du port."}},
    {Second(26),
     {"Diese Kanalnummer gibt es nicht, oder der Kanal ist nicht geöffnet.",
      "This channel number does not exist or the channel is not opened.",
      "Ce numéro de canal n'existe pas ou le canal n'est pas ouvert."}},
    {Second(27),
     {"Die Schnittstelle wird von einem anderen Programm benutzt, oder die serielle Schnittstelle "
      "wurde nicht gefunden. \\nBei einem PC ohne serielle Schnittstelle: bitte den USB-Adapter "
      "einstecken.",
      "The interface is used by another program or the serial port could not be found. \\nIf using "
      "a PC without serial ports: Please plug in your USB adapter.",
      "L'interface est utilisée par un autre programme ou le port série est introuvable. \\nSi le "
      "PC n'a pas de port série : veuillez brancher l'adaptateur USB."}},
    {Second(28),
     {"Keine Rufnummer für die Modemverbindung gefunden. Bitte den Menüpunkt Einstellungen "
      "aufrufen.",
      "No phone number found for modem dialing. Please start the menu item Settings.",
      "Aucun numéro de téléphone pour l'appel par modem. Veuillez ouvrir le menu Réglages."}},
    {Second(29),
     {"Beim Zugriff auf das Modem ist ein Fehler aufgetreten. Bitte alle Kabel usw. prüfen.",
      "A problem occurred while accessing the modem. Please check all cables and so on.",
      "Un problème est survenu lors de l'accès au modem. Veuillez vérifier tous les câbles, etc."}},
    {Second(31),
     {"Das andere Modem ist besetzt, hebt nicht ab, oder der Vorgang wurde abgebrochen.",
      "The other modem is either busy or does not pick up or the process was cancelled.",
      "L'autre modem est occupé, ne décroche pas, ou l'appel a été annulé."}},
    {Second(32),
     {"Eine Verbindung mit diesem Namen wurde nicht gefunden.",
      "A Connection with this name could not be found.",
      "Aucune liaison de ce nom n'a été trouvée."}},
    {Second(33),
     {"Diese Schnittstelle wird bereits von einer anderen Verbindung benutzt.",
      "This port is already used by another Connection.",
      "Ce port est déjà utilisé par une autre liaison."}},
    {Second(34),
     {"Alle Schnittstellen dieser Art sind in Gebrauch.", "All ports of that kind are in use.",
      "Tous les ports de ce genre sont occupés."}},
    {Second(36),
     {"Prüfsummenfehler beim Empfangen.", "Checksum error while receiving.",
      "Erreur de somme de contrôle à la réception."}},
    {Second(37),
     {"Prüfsummenfehler beim Senden.", "Checksum error while sending.",
      "Erreur de somme de contrôle à l'émission."}},
    {Second(38),
     {"Die Verbindung, auf der Ihre eigene Rufnummer beruhen soll, ist bereits aktiv. Alle "
      "Programme schließen, die diese Verbindung benutzen.",
      "The Connection You want to use as the base of Your individual phone number is already "
      "active. Close all applications using that connection.",
      "La liaison qui doit servir de base à votre numéro individuel est déjà active. Fermez tous "
      "les programmes qui l'utilisent."}},
    {Second(39),
     {"ZubServer (Fendra): Interner Fehler", "ZubServer (Fendra): Internal Error",
      "ZubServer (Fendra) : erreur interne"}},
    {Second(40),
     {"Unerwartete oder keine Antwort vom Sternkoppler.",
      "Unexpected or no answer from the Starcoupler.",
      "Réponse inattendue ou absente du coupleur en étoile."}},
    {Second(41),
     {"Der Server hat nicht geantwortet. Entweder wurde er beendet, oder es gibt eine Störung im "
      "Netzwerk.",
      "The server did not answer. Either it was terminated or a network problem has occurred.",
      "Le serveur n'a pas répondu. Soit il a été arrêté, soit il y a un problème de réseau."}},
    {Second(42),
     {"Fehler beim Verbinden mit dem Server. Host oder Portnummer ist falsch.",
      "Error while trying to connect to the server. Either Host or Port Number is wrong.",
      "Erreur de connexion au serveur. L'hôte ou le numéro de port est faux."}},
    {Second(43),
     {"Der Kanal ist bereits geöffnet.", "Channel already open.", "Le canal est déjà ouvert."}},
    {Second(44),
     {"Die Daten der Verbindung sind fehlerhaft.", "Connection's data is faulty.",
      "Les données de la liaison sont erronées."}},
    {Second(45),
     {"Zu viele Kanäle geöffnet.", "Too many channels open.", "Trop de canaux ouverts."}},
    {text::kConnection, {"&Verbindung", "&Connection", "&Liaison"}},
    {text::kSelectDevice, {"Gerät auswählen", "Select Device", "Choisir l'appareil"}},
    {text::kDevice, {"&Gerät", "&Device", "&Appareil"}},
    {text::kNoneRestored,
     {"Die gewählte Verbindung konnte nicht aufgebaut werden. Weil auch die vorige Verbindung "
      "nicht wiederhergestellt werden konnte, ist jetzt keine Verbindung aktiv. Bitte alle Kabel, "
      "Schalter usw. prüfen, die die Geräte mit dem PC verbinden.",
      "The Connection You selected could not be established. Because the previous Connection could "
      "not be restored, there is no Connection active now. Please check all cables, switches etc. "
      "which connect the devices with the PC.",
      "La liaison choisie n'a pas pu être établie. La liaison précédente n'ayant pas pu être "
      "rétablie, aucune liaison n'est active. Veuillez vérifier tous les câbles, commutateurs, "
      "etc. qui relient les appareils au PC."}},
    {Second(65),
     {"Das Kommunikationsprogramm ZubServer konnte nicht gestartet werden.",
      "The communication program ZubServer could not be startet successfully.",
      "Le programme de communication ZubServer n'a pas pu être démarré."}},
    {text::kUseSarvik,
     {"Für dieses Gerät bitte die Software Sarvik verwenden",
      "Please use the Sarvik software for this kind of device",
      "Pour ce genre d'appareil, veuillez utiliser le logiciel Sarvik"}},
    {text::kUseDremlo,
     {"Für dieses Gerät bitte die Software Dremlo verwenden",
      "Please use the Dremlo software for this kind of device",
      "Pour ce genre d'appareil, veuillez utiliser le logiciel Dremlo"}},
    {text::kDirect, {"<direkt>", "<direct>", "<direct>"}},
    {text::kOnlineNecessary,
     {"Zum Fortsetzen ist eine besondere Verbindung (Online-Verbindung) nötig. Sie wird am Anfang "
      "aufgebaut.  Bitte diesen Vorgang beenden und den Urlader neu starten.",
      "To continue this operation a special kind of Connection (Online-connection) is necessary. "
      "It is started at the beginning.  Therefore please stop this operation and restart the Boot "
      "Loader.",
      "Pour continuer, une liaison particulière (liaison en ligne) est nécessaire. Elle est "
      "établie au début.  Veuillez arrêter cette opération et relancer le chargeur d'amorçage."}},
    {text::kTapsUnderLoad,
     {"Stufungen unter Last", "Tap Changes under Load", "Changements de prise en charge"}},
    {text::kTapsTotal, {"Stufungen gesamt", "Tap Changes Total", "Changements de prise au total"}},
    {text::kStatistics, {"Statistik", "Statistics", "Statistique"}},
    {text::kDeleteStatistics,
     {"Statistik löschen?", "Delete Statistics?", "Effacer la statistique ?"}},
    {text::kCopiedAsTextAndPicture,
     {"Die Daten wurden als Text und als Bild in die Zwischenablage kopiert.",
      "The data was copied to the clipboard as a text and as a picture.",
      "Les données ont été copiées dans le presse-papiers comme texte et comme image."}},
    {text::kOnlyReglerLx,
     {"Der gewünschte Vorgang ist nur bei den Gerätetypen KT-X(B) und LX-X möglich.",
      "The intended operation is possible on Device Types KT-X(B) and LX-X only.",
      "L'opération voulue n'est possible qu'avec les types d'appareil KT-X(B) et LX-X."}},
    {text::kOnlyRegler,
     {"Der gewünschte Vorgang ist nur beim Gerätetyp KT-X(B) möglich.",
      "The intended operation is possible on Device Type KT-X(B) only.",
      "L'opération voulue n'est possible qu'avec le type d'appareil KT-X(B)."}},
    {text::kOnlyXw,
     {"Der gewünschte Vorgang ist nur beim Gerätetyp KT-XW(B) möglich.",
      "The intended operation is possible on Device Type KT-XW(B) only.",
      "L'opération voulue n'est possible qu'avec le type d'appareil KT-XW(B)."}},
    {text::kUserManagement,
     {"Benutzerverwaltung (COM)", "User Management (COM)", "Gestion des utilisateurs (COM)"}},
    {text::kExceptPort,
     {"COM %s vom COM-Port-Schutz ausnehmen", "Except COM %s from COM Port Protection",
      "Exclure COM %s de la protection des ports COM"}},
    {text::kNoAdminPassword,
     {"Es ist noch kein Admin-Passwort vergeben. Legen Sie es zuerst fest; danach lassen sich "
      "weitere Benutzer einrichten.",
      "No Admin Password is defined yet. Define it first; then further users can be set up.",
      "Aucun mot de passe admin n'est encore défini. Définissez-le d'abord ; ensuite d'autres "
      "utilisateurs pourront être créés."}},
    {text::kGrant0, {"0 (keine Rechte)", "0 (no grants)", "0 (aucun droit)"}},
    {text::kGrant1,
     {"1 (Lokal R/-, TESK -/-)", "1 (Local R/-, TESK -/-)", "1 (Local R/-, TESK -/-)"}},
    {text::kGrant2,
     {"2 (Lokal R/-, TESK R/-)", "2 (Local R/-, TESK R/-)", "2 (Local R/-, TESK R/-)"}},
    {text::kGrant3,
     {"3 (Lokal R/W, TESK -/-)", "3 (Local R/W, TESK -/-)", "3 (Local R/W, TESK -/-)"}},
    {text::kGrant4,
     {"4 (Lokal R/W, TESK R/-)", "4 (Local R/W, TESK R/-)", "4 (Local R/W, TESK R/-)"}},
    {text::kGrant5,
     {"5 (Lokal R/W, TESK R/W)", "5 (Local R/W, TESK R/W)", "5 (Local R/W, TESK R/W)"}},
    {text::kAccessableByAnyone,
     {"Wenn Sie fortfahren, ist das Gerät für jeden zugänglich. Fortfahren?",
      "If you continue the device is accessable by anyone. Continue?",
      "Si vous continuez, l'appareil sera accessible à tous. Continuer ?"}},
    {text::kExceptForScada,
     {"Hat das Gerät eine SCADA-Verbindung, muss COM2 vom Schutz ausgenommen werden.",
      "If the device has a SCADA connection, COM2 must be excepted from the protection.",
      "Si l'appareil a une liaison SCADA, COM2 doit être exclu de la protection."}},
};
static_assert(Ascending(kTable));

}  // namespace

std::span<const TableEntry> SecondBlock() {
  return kTable;
}

}  // namespace ostrel
