#include "pages/console/console_texts.h"

#include "base/string_table.h"

namespace ostrel {

namespace {

constexpr TableEntry kTable[] = {
    {text::kRow, {"Zeile", "Row", "Ligne"}},
    {text::kTooLong, {"Zu lang", "Too Long", "Trop longue"}},
    {text::kMoreRows, {"... und %s weitere", "... and %s more", "... et %s autres"}},
    {text::kTooManyLines,
     {"Ein Skript darf höchstens 32767 Zeilen haben.", "A script may have 32767 lines at most.",
      "Un script peut avoir 32767 lignes au plus."}},
    {text::kRegLCommands, {"RegL-Befehle", "RegL-Commands", "des commandes RegL"}},
    {text::kLogNotWritten,
     {"Die Logdatei der Konsole konnte nicht geschrieben werden; die Konsole arbeitet ohne sie "
      "weiter: %s",
      "The logfile of the console could not be written; the console goes on without it: %s",
      "Le fichier journal de la console n'a pas pu être écrit ; la console continue sans lui : "
      "%s"}},
    {text::kFileNotRead,
     {"Die Datei konnte nicht gelesen werden: %s", "The file could not be read: %s",
      "Le fichier n'a pas pu être lu : %s"}},
    {text::kFileTooLarge,
     {"Die Datei ist größer als 16 MiB: %s", "The file is larger than 16 MiB: %s",
      "Le fichier dépasse 16 MiB : %s"}},
    {text::kFileNoText,
     {"Die Datei enthält keinen Text: %s", "The file does not hold a text: %s",
      "Le fichier ne contient pas de texte : %s"}},
    {text::kSavedAsUtf8,
     {"Der Text lässt sich nicht in Windows-1252 halten. Die Datei wurde in UTF-8 gespeichert.",
      "The text cannot be kept in Windows-1252. The file was saved in UTF-8.",
      "Le texte ne peut pas rester en Windows-1252. Le fichier a été enregistré en UTF-8."}},
    {text::kNoLineHolds,
     {"Dieses Zeichen lässt sich nicht senden:", "This character cannot be sent:",
      "Ce caractère ne peut pas être envoyé :"}},

    // The page.
    {text::kLoadScript, {"Ö&ffnen ...", "&Open ...", "&Ouvrir ..."}},
    {text::kSaveScript, {"&Speichern", "&Save", "Enre&gistrer"}},
    {text::kSaveScriptAs, {"Speichern &unter ...", "Save &as ...", "Enregis&trer sous ..."}},
    {text::kNewScript, {"&Neu", "&New", "&Nouveau"}},
    {text::kReadScriptButton,
     {"&Vom Gerät lesen ...", "Read &from device ...", "&Lire l'appareil ..."}},
    {text::kSendSeveral,
     {"An &mehrere senden ...", "Send to severa&l ...", "Envoyer à pl&usieurs ..."}},
    {text::kExportAnswers,
     {"Antworten e&xportieren ...", "E&xport answers ...", "E&xporter les réponses ..."}},
    {text::kCheckScript, {"P&rüfen", "Chec&k", "&Vérifier"}},
    {text::kSendMenu, {"Sen&den", "S&end", "&Envoyer"}},
    {text::kSendAll, {"&Alles senden", "Send &all", "Envoyer &tout"}},
    {text::kSendFromCursor,
     {"Ab &Cursor senden", "Send from &cursor", "Envoyer à partir du &curseur"}},
    {text::kSendLine, {"&Zeile senden", "Send &line", "Envoyer la &ligne"}},
    {text::kSendSelection, {"&Markierung senden", "Send &selection", "Envoyer la &sélection"}},
    {text::kCopyText, {"&Kopieren", "C&opy", "Co&pier"}},
    {text::kPasteText, {"&Einfügen", "&Paste", "C&oller"}},
    {text::kUndo, {"&Rückgängig", "&Undo", "&Annuler la frappe"}},
    {text::kRedo, {"&Wiederherstellen", "&Redo", "&Rétablir"}},
    {text::kFind, {"&Suchen ...", "&Find ...", "Rec&hercher ..."}},
    {text::kFindText, {"Su&chen:", "F&ind:", "Rec&hercher :"}},
    {text::kFindNext, {"&Weiter", "Nex&t", "Su&ivant"}},
    {text::kFindBack, {"Zurüc&k", "Previo&us", "Précé&dent"}},
    {text::kNotFound, {"Nicht gefunden.", "Not found.", "Introuvable."}},
    {text::kRecentFiles, {"&Zuletzt geöffnet", "&Recent", "&Récents"}},
    {text::kNoFiles, {"(keine)", "(none)", "(aucun)"}},
    {text::kShowAnswers,
     {"Antworten zeigen und protoko&llieren", "S&how and log the answers",
      "A&fficher et journaliser les réponses"}},
    {text::kLogFile, {"Pro&tokolldatei ...", "Lo&g file ...", "&Journal ..."}},
    {text::kNewScriptName, {"(neues Skript)", "(new script)", "(nouveau script)"}},
    {text::kCaretLine, {"Zeile %s", "Line %s", "Ligne %s"}},
    {text::kCharacters, {"%s Zeichen", "%s characters", "%s caractères"}},
    {text::kLineOf, {"Zeile %s von %s", "Line %s of %s", "Ligne %s sur %s"}},
    {text::kDiscardScript,
     {"Das Skript hat Änderungen, die nicht gespeichert sind. Verwerfen?",
      "The script has changes that are not saved. Discard them?",
      "Le script a des modifications non enregistrées. Les abandonner ?"}},
    {text::kTextFiles,
     {"Textdateien (*.txt)|*.txt|Alle Dateien (*.*)|*.*",
      "Text files (*.txt)|*.txt|All files (*.*)|*.*",
      "Fichiers texte (*.txt)|*.txt|Tous les fichiers (*.*)|*.*"}},
    {text::kScriptPane, {"Skript", "Script", "Script"}},
    {text::kAnswerPane, {"Antworten", "Answers", "Réponses"}},
};
static_assert(Ascending(kTable, Own(300), kTextsOfAFeature));

}  // namespace

std::span<const TableEntry> ConsoleTexts() {
  return kTable;
}

}  // namespace ostrel
