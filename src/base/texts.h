#pragma once

#include "base/messages.h"

namespace ostrel::text {

// First block.
inline constexpr int kOk = First(0);
inline constexpr int kCancel = First(1);
inline constexpr int kError = First(5);
inline constexpr int kSuccessful = First(126);
inline constexpr int kType = First(142);
inline constexpr int kTransferFinished = First(155);
inline constexpr int kTransferCancelled = First(156);
inline constexpr int kSaveAs = First(170);
inline constexpr int kSelectLogFile = First(195);
inline constexpr int kOpenFile = First(201);
inline constexpr int kNoFileOpen = First(223);
inline constexpr int kNoErrors = First(227);
inline constexpr int kRuntimeError = First(239);
inline constexpr int kUserNameAndPassword = First(245);
inline constexpr int kUserPassword = First(246);
inline constexpr int kNewPassword = First(255);
inline constexpr int kConfirmPassword = First(256);
inline constexpr int kPasswordsDiffer = First(257);
inline constexpr int kPasswordNotChanged = First(259);
inline constexpr int kEnterAdminPassword = First(265);
inline constexpr int kDeviceReplied = First(280);
inline constexpr int kNoConnectionToDevice = First(299);
inline constexpr int kNothingToSend = First(300);
inline constexpr int kNoDeviceSelected = First(301);
inline constexpr int kUserGuest = First(306);
inline constexpr int kUserAdmin = First(307);
inline constexpr int kUser2 = First(308);
inline constexpr int kUser3 = First(309);
inline constexpr int kUser4 = First(310);
inline constexpr int kUser5 = First(311);
inline constexpr int kScriptFilter = First(480);
inline constexpr int kLogFilter = First(485);
inline constexpr int kFirmwareTooOld = First(496);
inline constexpr int kGrantsCurrently = First(641);
inline constexpr int kLoginForMore = First(642);

// Second block; the server's error codes 10011..10045 are ids themselves.
inline constexpr int kConnection = Second(54);
inline constexpr int kSelectDevice = Second(56);
inline constexpr int kSelectDevices = Second(57);
inline constexpr int kDevice = Second(58);
inline constexpr int kNoneRestored = Second(61);
inline constexpr int kUseSarvik = Second(66);
inline constexpr int kUseDremlo = Second(67);
inline constexpr int kSendToDevice = Second(68);
inline constexpr int kDirect = Second(71);
inline constexpr int kOnlineNecessary = Second(96);
inline constexpr int kTapsUnderLoad = Second(107);
inline constexpr int kTapsTotal = Second(108);
inline constexpr int kStatistics = Second(109);
inline constexpr int kDeleteStatistics = Second(110);
inline constexpr int kCopiedAsTextAndPicture = Second(111);
inline constexpr int kOnlyReglerLx = Second(128);
inline constexpr int kOnlyRegler = Second(129);
inline constexpr int kOnlyXw = Second(130);
inline constexpr int kScriptErrors = Second(258);
inline constexpr int kFileTypeDiffers = Second(259);
inline constexpr int kReadScript = Second(260);
inline constexpr int kDeviceFinished = Second(262);
inline constexpr int kSendingCancelled = Second(263);
inline constexpr int kDeviceColon = Second(264);
inline constexpr int kUserManagement = Second(334);
inline constexpr int kExceptPort = Second(337);
inline constexpr int kNoAdminPassword = Second(342);
inline constexpr int kGrant0 = Second(346);
inline constexpr int kGrant1 = Second(347);
inline constexpr int kGrant2 = Second(348);
inline constexpr int kGrant3 = Second(349);
inline constexpr int kGrant4 = Second(350);
inline constexpr int kGrant5 = Second(351);
inline constexpr int kAccessableByAnyone = Second(354);
inline constexpr int kExceptForScada = Second(362);

// Texts without a number in either block; those of one feature stand in its folder.
inline constexpr int kOutOfRange = Own(1);
inline constexpr int kUsedInstead = Own(2);
inline constexpr int kExchangeUnderWay = Own(3);
inline constexpr int kExchangeGivenUp = Own(4);
inline constexpr int kLanguageNotAllowed = Own(5);
inline constexpr int kFileNotWritten = Own(6);
inline constexpr int kConnectionFaulty = Own(7);
inline constexpr int kNotConfirmed = Own(9);
inline constexpr int kNoDisplay = Own(10);
inline constexpr int kServerNotRunning = Own(11);
inline constexpr int kServerStopped = Own(12);
inline constexpr int kNoDeviceAnswers = Own(13);
inline constexpr int kStationsIncomplete = Own(14);
inline constexpr int kWrongUsage = Own(15);
inline constexpr int kYesNo = Own(16);
inline constexpr int kYesLetters = Own(17);
inline constexpr int kNoSuchConnection = Own(18);
inline constexpr int kServerRunning = Own(19);
inline constexpr int kReselectAnswering = Own(20);
inline constexpr int kChooseNumber = Own(21);
inline constexpr int kOtherSelection = Own(22);
inline constexpr int kSettingsNotStored = Own(23);
inline constexpr int kSettingsPutAside = Own(24);
inline constexpr int kNothingSent = Own(28);

// Captions of windows and tables.
inline constexpr int kAddress = Own(102);
inline constexpr int kName = Own(103);
inline constexpr int kVersion = Own(104);
inline constexpr int kModel = Own(105);
inline constexpr int kFirmware = Own(106);
inline constexpr int kSerialNumber = Own(107);
inline constexpr int kTarget = Own(109);
inline constexpr int kKind = Own(110);
inline constexpr int kProcess = Own(111);
inline constexpr int kUptime = Own(112);
inline constexpr int kPrograms = Own(113);
inline constexpr int kChannels = Own(114);
inline constexpr int kSelectDeviceButton = Own(120);
inline constexpr int kRead = Own(121);
inline constexpr int kSimulatedDevices = Own(124);
inline constexpr int kMenuProgram = Own(125);
inline constexpr int kMenuQuit = Own(126);
inline constexpr int kMenuView = Own(127);
inline constexpr int kSchemeSystem = Own(128);
inline constexpr int kSchemeLight = Own(129);
inline constexpr int kSchemeDark = Own(130);
inline constexpr int kTreeLogs = Own(131);
inline constexpr int kNotConnected = Own(132);
inline constexpr int kReading = Own(133);
inline constexpr int kReopenConnection = Own(134);
inline constexpr int kSelectConnection = Own(135);
inline constexpr int kTreeOperation = Own(137);
inline constexpr int kTreeConfiguration = Own(138);
inline constexpr int kConsole = Own(139);

// The desktop program.
inline constexpr int kYes = Own(160);
inline constexpr int kNo = Own(161);
inline constexpr int kConnectedTo = Own(162);
inline constexpr int kSimulationMark = Own(163);
inline constexpr int kReadPage = Own(165);

// Connections: their list, their data, their test.
inline constexpr int kMenuConnections = Own(170);
inline constexpr int kConnectionsTitle = Own(171);
inline constexpr int kConnectionList = Own(172);
inline constexpr int kState = Own(173);
inline constexpr int kIsCurrent = Own(174);
inline constexpr int kIsOpen = Own(175);
inline constexpr int kAdd = Own(176);
inline constexpr int kChange = Own(177);
inline constexpr int kRemove = Own(178);
inline constexpr int kTest = Own(179);
inline constexpr int kUse = Own(180);
inline constexpr int kClose = Own(181);
inline constexpr int kTestResult = Own(182);
inline constexpr int kTesting = Own(183);
inline constexpr int kNewConnection = Own(184);
inline constexpr int kChangeConnection = Own(185);
inline constexpr int kRemoveConnection = Own(186);
inline constexpr int kConnectionTaken = Own(187);
inline constexpr int kBuiltIn = Own(188);
inline constexpr int kOptionProblem = Own(189);
inline constexpr int kNameProblem = Own(190);
inline constexpr int kKindProblem = Own(191);
inline constexpr int kHostProblem = Own(192);
inline constexpr int kPortProblem = Own(193);
inline constexpr int kDeviceProblem = Own(194);
inline constexpr int kBaudProblem = Own(195);
inline constexpr int kFramingProblem = Own(196);
inline constexpr int kKindSimulator = Own(197);
inline constexpr int kKindTcp = Own(198);
inline constexpr int kKindSerial = Own(199);
inline constexpr int kFieldName = Own(200);
inline constexpr int kFieldKind = Own(201);
inline constexpr int kFieldHost = Own(202);
inline constexpr int kFieldPort = Own(203);
inline constexpr int kFieldDevice = Own(204);
inline constexpr int kFieldBaud = Own(205);
inline constexpr int kFieldParity = Own(206);
inline constexpr int kFieldStopBits = Own(207);
inline constexpr int kParityNone = Own(208);
inline constexpr int kParityEven = Own(209);
inline constexpr int kParityOdd = Own(210);
inline constexpr int kParityMark = Own(211);
inline constexpr int kParitySpace = Own(212);
inline constexpr int kTestPassed = Own(213);
inline constexpr int kTestNoServer = Own(214);
inline constexpr int kTestNotOpen = Own(215);
inline constexpr int kTestNoAnswer = Own(216);
inline constexpr int kErrorAnswer = Own(217);
inline constexpr int kEmptyAnswer = Own(218);
inline constexpr int kHelpHost = Own(219);
inline constexpr int kHelpAdapter = Own(220);
inline constexpr int kHelpPermission = Own(221);
inline constexpr int kHelpPortShared = Own(222);
inline constexpr int kHelpSilent = Own(223);
inline constexpr int kHelpDisturbed = Own(224);
inline constexpr int kHelpTooBig = Own(225);
inline constexpr int kHelpOnline = Own(226);
inline constexpr int kHelpName = Own(227);
inline constexpr int kHelpData = Own(228);
inline constexpr int kHelpServer = Own(229);

// The list of stations.
inline constexpr int kHelp = Own(270);
inline constexpr int kHelpStations = Own(271);

// The frame of the main window.
inline constexpr int kOtherDevice = Own(280);
inline constexpr int kDeviceBefore = Own(281);
inline constexpr int kDeviceNow = Own(282);
inline constexpr int kWritingLocked = Own(283);
inline constexpr int kOtherDeviceMark = Own(284);
inline constexpr int kConnectionLost = Own(285);
inline constexpr int kPageNotOnModel = Own(286);
inline constexpr int kServiceLog = Own(287);
inline constexpr int kReadEveryMinute = Own(288);

}  // namespace ostrel::text
