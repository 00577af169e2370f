# Tables for which wixl has no element: one statement on each line, executed in order. VERSION is replaced by the
# version.

# The installation creates the keys that the applet watches, and the removal keeps them with their values ("+").
INSERT INTO `Registry` (`Registry`, `Root`, `Key`, `Name`, `Component_`) VALUES ('UpdateResults', 2, 'SOFTWARE\Corvane Systems\TessaraLink\updates\results', '+', 'Applet')
INSERT INTO `Registry` (`Registry`, `Root`, `Key`, `Name`, `Component_`) VALUES ('Downloads', 2, 'SOFTWARE\Corvane Systems\TessaraLink\downloads', '+', 'Applet')

# INSTALLDIR is the folder that the administrator gives, else that of the installed applet, else the agent's
# directory, else the default.
CREATE TABLE `CompLocator` (`Signature_` CHAR(72) NOT NULL, `ComponentId` CHAR(38) NOT NULL, `Type` INT PRIMARY KEY `Signature_`)
INSERT INTO `CompLocator` (`Signature_`, `ComponentId`, `Type`) VALUES ('PresentPlace', '{93C1F2E7-64B8-4D0A-9E5F-2A7D81B60C53}', 0)
INSERT INTO `RegLocator` (`Signature_`, `Root`, `Key`, `Type`) VALUES ('AgentsPlace', 2, 'SOFTWARE\Corvane Systems\TessaraLink', 0)
INSERT INTO `AppSearch` (`Property`, `Signature_`) VALUES ('PRESENTDIRECTORY', 'PresentPlace')
INSERT INTO `AppSearch` (`Property`, `Signature_`) VALUES ('AGENTDIRECTORY', 'AgentsPlace')
INSERT INTO `InstallUISequence` (`Action`, `Sequence`) VALUES ('AppSearch', 50)
INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('AppSearch', 50)
UPDATE `Property` SET `Value` = 'WIX_DOWNGRADE_DETECTED;WIX_UPGRADE_DETECTED;INSTALLDIR;PRESENTDIRECTORY;AGENTDIRECTORY' WHERE `Property` = 'SecureCustomProperties'
INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`) VALUES ('UsePresentPlace', 51, 'INSTALLDIR', '[PRESENTDIRECTORY]')
INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`) VALUES ('UseAgentsPlace', 51, 'INSTALLDIR', '[AGENTDIRECTORY]')
INSERT INTO `InstallUISequence` (`Action`, `Condition`, `Sequence`) VALUES ('UsePresentPlace', 'PRESENTDIRECTORY AND NOT INSTALLDIR', 51)
INSERT INTO `InstallUISequence` (`Action`, `Condition`, `Sequence`) VALUES ('UseAgentsPlace', 'AGENTDIRECTORY AND NOT INSTALLDIR', 52)
INSERT INTO `InstallExecuteSequence` (`Action`, `Condition`, `Sequence`) VALUES ('UsePresentPlace', 'PRESENTDIRECTORY AND NOT INSTALLDIR', 51)
INSERT INTO `InstallExecuteSequence` (`Action`, `Condition`, `Sequence`) VALUES ('UseAgentsPlace', 'AGENTDIRECTORY AND NOT INSTALLDIR', 52)
INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`) VALUES ('TellPlace', 51, 'ARPINSTALLLOCATION', '[INSTALLDIR]')
INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('TellPlace', 1001)

# A running applet is asked to close, then ended, in every session. It has nothing to save. It starts again with
# the next session.
INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`) VALUES ('AskToClose', 98, 'SystemFolder', '"[SystemFolder]taskkill.exe" /IM vh_tray.exe')
INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('AskToClose', 1399)
INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`) VALUES ('EndApplet', 3170, 'SystemFolder', '"[SystemFolder]taskkill.exe" /F /IM vh_tray.exe')
INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('EndApplet', 1501)

# The installer compares three numbers of a version. A version that differs in the fourth number also replaces
# the installed one.
DELETE FROM `Upgrade` WHERE `ActionProperty` = 'WIX_UPGRADE_DETECTED'
INSERT INTO `Upgrade` (`UpgradeCode`, `VersionMax`, `Attributes`, `ActionProperty`) VALUES ('{8A0F6C5E-51C3-4C39-9A0D-6B1E0D3C7F42}', 'VERSION', 513, 'WIX_UPGRADE_DETECTED')
# A file with a version is compared by the version, not by its hash.
UPDATE `File` SET `Version` = 'VERSION', `Language` = '1033' WHERE `File` = 'vh_tray.exe'
DELETE FROM `MsiFileHash` WHERE `File_` = 'vh_tray.exe'
# A parser library of the agent stays when the applet is removed: the system counts its users.
UPDATE `Component` SET `Attributes` = 8 WHERE `Component` = 'Parser'
UPDATE `Directory` SET `DefaultDir` = 'CORVANE|Corvane Systems' WHERE `Directory` = 'MakersFolder'
UPDATE `Directory` SET `DefaultDir` = 'TESSARA|Tessara Link' WHERE `Directory` = 'INSTALLDIR'
INSERT INTO `LaunchCondition` (`Condition`, `Description`) VALUES ('VersionNT >= 601', 'The Tessara Link tray applet needs Windows 7 or later.')
INSERT INTO `RemoveFile` (`FileKey`, `Component_`, `DirProperty`, `InstallMode`) VALUES ('MakersFolder', 'Applet', 'MakersFolder', 2)
