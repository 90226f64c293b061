#include "common/Settings.h"

#include <QDir>
#include <QSettings>
#include <QStringList>
#include <QVariantMap>
#include <cmath>
#include <limits>

namespace brackwell {
namespace {

using namespace Qt::StringLiterals;

/// The store takes slashes in a name for a path, so they are escaped; all else it keeps as it is.
QString Escape(QString name) {
  return name.replace(u'%', u"%25"_s).replace(u'/', u"%2F"_s).replace(u'\\', u"%5C"_s);
}

QString Unescape(QString name) {
  return name.replace(u"%5C"_s, u"\\"_s).replace(u"%2F"_s, u"/"_s).replace(u"%25"_s, u"%"_s);
}

bool SameName(const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) == 0; }

class Store {
 public:
  // Values that an administrator set for everybody would survive a DeleteSetting, so they are left out.
  Store() : mStore(u"Brackwell"_s, u"Brackwell"_s) { mStore.setFallbacksEnabled(false); }

  /// The names, as stored, that mean this address; more than one only in a file edited by hand.
  QStringList Find(const QString& section, const QString& key) const {
    QStringList found;
    const QStringList names = mStore.allKeys();
    for (const QString& name : names) {
      const qsizetype slash = name.indexOf(u'/');
      // The store calls the section without a name "General".
      const QString itsSection = slash < 0 ? u"General"_s : Unescape(name.left(slash));
      if (SameName(itsSection, section) && SameName(Unescape(name.mid(slash + 1)), key)) found << name;
    }
    return found;
  }

  /// An unquoted comma in a hand-written file makes a list of the value; it is put together again.
  QString Value(const QString& name) const {
    const QVariant value = mStore.value(name);
    return value.typeId() == QMetaType::QStringList ? value.toStringList().join(u',') : value.toString();
  }

  void Save(const QString& section, const QString& key, const QString& value) {
    QStringList names = Find(section, key);
    if (names.isEmpty()) names << NewName(section, key);
    mStore.setValue(names.takeFirst(), value);
    for (const QString& duplicate : names) mStore.remove(duplicate);
  }

  void Remove(const QString& name) { mStore.remove(name); }

  QVariantMap All() const {
    QVariantMap all;
    const QStringList names = mStore.allKeys();
    for (const QString& name : names) all[name] = mStore.value(name);
    return all;
  }

  void Restore(const QVariantMap& all) {
    mStore.clear();
    for (auto it = all.begin(); it != all.end(); ++it) mStore.setValue(it.key(), it.value());
  }

  /// False where what was changed has not reached the disk.
  bool Write() {
    mStore.sync();
    return mStore.status() == QSettings::NoError;
  }

  QString Place() const {
    const QString place = QDir::toNativeSeparators(mStore.fileName());
    // A key of the registry is given as a path with a root.
    return place.startsWith(u"\\HKEY_"_s) ? place.mid(1) : place;
  }

 private:
  static QString NewName(const QString& section, const QString& key) {
    return SameName(section, u"General"_s) ? Escape(key) : Escape(section) + u'/' + Escape(key);
  }

  QSettings mStore;  // written to disk when it goes
};

std::optional<double> ToNumber(const QString& text) {
  bool isNumber = false;
  const double number = text.trimmed().toDouble(&isNumber);
  if (!isNumber || !std::isfinite(number)) return std::nullopt;
  return number;
}

}  // namespace

QString GetSetting(const QString& section, const QString& key, const QString& defaultValue) {
  const Store store;
  const QStringList names = store.Find(section, key);
  return names.isEmpty() ? defaultValue : store.Value(names.first());
}

void SaveSetting(const QString& section, const QString& key, const QString& value) {
  Store().Save(section, key, value);
}

bool SaveSettings(const std::vector<Setting>& settings) {
  // Read through a store of its own: that a file was written by hand and holds lines that are no settings
  // would count as a fault of the one that reads it first.
  const QVariantMap before = Store().All();
  Store store;
  for (const Setting& setting : settings) store.Save(setting.Section, setting.Key, setting.Value);
  if (store.Write()) return true;
  // What cannot be written would stay in memory, and be written whenever that works again.
  store.Restore(before);
  return false;
}

QString SettingsPlace() { return Store().Place(); }

void DeleteSetting(const QString& section, const QString& key) {
  Store store;
  const QStringList names = store.Find(section, key);
  for (const QString& name : names) store.Remove(name);
}

std::optional<int> GetSettingNumber(const QString& section, const QString& key, int defaultValue) {
  const std::optional<double> number = ToNumber(GetSetting(section, key, QString::number(defaultValue)));
  if (!number) return std::nullopt;
  const double rounded = std::nearbyint(*number);
  using Limits = std::numeric_limits<int>;
  if (rounded < Limits::min() || rounded > Limits::max()) return std::nullopt;
  return static_cast<int>(rounded);
}

bool GetSettingFlag(const QString& section, const QString& key, bool defaultValue) {
  const QString text = GetSetting(section, key).trimmed();
  if (SameName(text, u"True"_s)) return true;
  if (SameName(text, u"False"_s)) return false;
  const std::optional<double> number = ToNumber(text);
  return number ? *number != 0 : defaultValue;
}

}  // namespace brackwell
