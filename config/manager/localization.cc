// Locale descriptors and localised driver texts, created on demand after start-up.
#include <Poco/File.h>
#include <Poco/Path.h>

#include <string_view>
#include <unordered_map>

#include "qr_config/config/manager/config_keys.h"
#include "qr_config/config/manager/config_manager_impl.h"
#include "qr_config/config/readers/loc_drv_xml_parser.h"
#include "qr_config/platform/orv_locale.h"
#include "qr_config/platform/process.h"
#include "qr_config/platform/qr_error.h"
#include "qr_config/platform/unicode_manager.h"

namespace {

// The first child of `parent` named exactly `name`, or null.
tree_node<ConfigManager::Node>* FindChild(tree_node<ConfigManager::Node>& parent,
                                          const std::string& name) {
  for (auto child = parent.ch_begin(); child != parent.ch_end(); ++child) {
    if ((*child).value().Name() == name) return &*child;
  }
  return nullptr;
}

}  // namespace

const Quorin::LocaleDescriptor& ConfigManagerImpl::GetLocale(const std::string& language,
                                                             const std::string& country) {
  const std::string id = orv_locale::makeLocaleId(language, country);
  const Quorin::LocaleDescriptor* languageEntry = nullptr;
  {
    Poco::ScopedReadRWLock lock(m_LocaleLock);
    auto found = m_Locales.find(id);
    if (found != m_Locales.end()) return found->second;
    auto bare = m_Locales.find(language);
    if (bare == m_Locales.end()) ThrowQRError(QRErrorCode::UnknownLocale, id);
    // Entries are never removed or changed, so the pointer outlives the lock.
    languageEntry = &bare->second;
  }
  Quorin::LocaleDescriptor copy(*languageEntry);
  copy.SetCountry(country);
  Poco::ScopedWriteRWLock lock(m_LocaleLock);
  // Another thread may have inserted the same identifier meanwhile: its entry stays.
  return m_Locales.emplace(id, std::move(copy)).first->second;
}

std::string& ConfigManagerImpl::LocalizeFileName(const Quorin::LocaleDescriptor& locale,
                                                 const std::string& extension, std::string& path) {
  const std::string base = path;
  path = base + orv_locale::makeLocaleId(locale.Language(), locale.Country()) + "." + extension;
  if (Poco::File(path).exists()) return path;
  path = base + locale.Language() + "." + extension;
  if (Poco::File(path).exists()) return path;
  path = base + "en." + extension;
  return path;
}

tree_node<ConfigManager::Node>& ConfigManagerImpl::GetLocalizedDriver(
    const std::string& driver, const Quorin::LocaleDescriptor& locale) {
  // A name holding the separator would make the unlocked look-up below descend into the
  // locale children, which a load on another thread may be appending: no driver of the
  // Localization node can be reached by such a name, so it is unknown at once.
  if (driver.find(m_Localization.separator()) != std::string::npos)
    ThrowQRError(QRErrorCode::UnknownDriver, driver);
  try {
    if (FindLocalized(driver, nullptr) == nullptr) ThrowQRError(QRErrorCode::UnknownDriver, driver);
  } catch (...) {
    ThrowQRError(QRErrorCode::UnknownDriver, driver);
  }
  const std::string localeId = orv_locale::makeLocaleId(locale.Language(), locale.Country());

  {
    Poco::ScopedReadRWLock lock(m_TreeLock);
    if (tree_node<Node>* loaded = FindLocalized(driver, &localeId)) return *loaded;
  }

  Poco::ScopedWriteRWLock lock(m_TreeLock);
  if (tree_node<Node>* loaded = FindLocalized(driver, &localeId)) return *loaded;

  const ConfigKeys& keys = ConfigKeys::Instance();
  std::string fileName = JoinNative(ConfigDirectory(), keys.LocalizedDriverFile);
  LocalizeFileName(locale, keys.LocalizedDriverExtension, fileName);
  if (!Poco::File(fileName).exists()) {
    // The missing file is reported with its name in UTF-8; a name that cannot be converted
    // (no platform character set, or bytes invalid in it) keeps its bytes.
    orv_utf8string name;
    try {
      UnicodeManager::Instance().PlatformToUTF8(
          fileName, name, GetPlatformCharSet(Process::Instance().CharSetName()));
    } catch (const QRError&) {
      name = orv_utf8string(fileName);
    }
    throw QRError(3, 256, QRErrorCode::FileCannotRead, name);
  }

  LocDrvXmlParser reader;
  reader.Parse(Poco::Path(fileName));

  // The first driver node of each name, for a load linear in the number of records. The
  // load appends locale nodes below the driver nodes, never beside them, so it stays valid.
  std::unordered_map<std::string_view, tree_node<Node>*> driverNodes;
  try {
    tree_node<Node>& localization = m_Tree.Find(Localization());
    driverNodes.reserve(localization.ch_size());
    for (auto child = localization.ch_begin(); child != localization.ch_end(); ++child)
      driverNodes.emplace((*child).value().Name(), &*child);
  } catch (const QRError&) {
    // No Localization node: every record is skipped, as each look-up would fail.
  }
  const char separator = m_Localization.separator();

  for (const LocalizedEntry& entry : reader.Entries()) {
    try {
      tree_node<Node>* entryDriver = nullptr;
      if (entry.Key.find(separator) != std::string::npos) {
        entryDriver = FindLocalized(entry.Key, nullptr);  // several levels of a node path
      } else {
        const auto found = driverNodes.find(entry.Key);
        if (found != driverNodes.end()) entryDriver = found->second;
      }
      if (entryDriver == nullptr) continue;
      Node node(localeId);
      node.push_back(Field(keys.ExternalName, entry.ExternalName));
      node.push_back(Field(keys.Comment, entry.Comment));
      entryDriver->ch_push_back(node);
    } catch (...) {
      // A record that cannot be filed is skipped; the others still load.
    }
  }

  try {
    if (tree_node<Node>* loaded = FindLocalized(driver, &localeId)) return *loaded;
  } catch (...) {
  }
  ThrowQRError(QRErrorCode::LocalizedNodeMissing);
}

tree_node<ConfigManager::Node>* ConfigManagerImpl::FindLocalized(const std::string& driver,
                                                                 const std::string* localeId) {
  const char separator = m_Localization.separator();
  const bool plainNames = driver.find(separator) == std::string::npos &&
                          (localeId == nullptr || localeId->find(separator) == std::string::npos);
  if (plainNames) {
    // Each name is one level: walk the children in place, with no path to build.
    tree_node<Node>* node = FindChild(m_Tree.Find(Localization()), driver);
    if (node != nullptr && localeId != nullptr) node = FindChild(*node, *localeId);
    return node;
  }
  NodePath path(Localization());
  path += driver;
  path = NodePath(static_cast<const char*>(path));
  if (localeId != nullptr) path += *localeId;
  try {
    return &m_Tree.Find(path);
  } catch (const QRError&) {
    return nullptr;
  }
}
