#include "CatalogueJson.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString resourcePath = QStringLiteral(":/PluginsConfiguration.json");

QString writeTemporaryFile(const QTemporaryDir &dir, const QByteArray &content)
{
    const QString path = dir.filePath(QStringLiteral("catalogue.json"));
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(content);
    return path;
}

} // namespace

TEST(CatalogueResourceTest, IsEmbeddedWithWindowsLineEnds)
{
    QFile resource(resourcePath);
    ASSERT_TRUE(resource.open(QIODevice::ReadOnly));
    const QByteArray bytes = resource.readAll();
    ASSERT_FALSE(bytes.isEmpty());
    EXPECT_TRUE(bytes.endsWith("}\r\n"));
    EXPECT_EQ(bytes.count("\n"), bytes.count("\r\n"));
    EXPECT_GT(bytes.count("\r\n"), 100);
}

TEST(CatalogueJsonTest, LoadsTheResource)
{
    const QJsonObject catalogue = loadCatalogueJson(resourcePath);
    EXPECT_EQ(catalogue.value("Defaults").toArray().size(), 12);
    EXPECT_TRUE(catalogue.value("PluginParam").isObject());
}

TEST(CatalogueJsonTest, MissingResourceGivesAnEmptyObject)
{
    EXPECT_TRUE(loadCatalogueJson(QStringLiteral(":/NoSuchCatalogue.json")).isEmpty());
}

TEST(CatalogueJsonTest, TextThatIsNotAnObjectGivesAnEmptyObject)
{
    QTemporaryDir dir;
    EXPECT_TRUE(loadCatalogueJson(writeTemporaryFile(dir, "{\"Defaults\": [")).isEmpty());
    EXPECT_TRUE(loadCatalogueJson(writeTemporaryFile(dir, "[{\"Defaults\": []}]")).isEmpty());
    EXPECT_TRUE(loadCatalogueJson(writeTemporaryFile(dir, "")).isEmpty());
}

TEST(FindEntryTest, GivesTheFirstMatchingObject)
{
    const QJsonArray array = {QJsonObject{{"name", "a"}, {"n", 1}}, QJsonObject{{"name", "b"}, {"n", 2}},
                              QJsonObject{{"name", "b"}, {"n", 3}}};
    EXPECT_EQ(findEntry(array, "name", "b").value("n").toInt(), 2);
}

TEST(FindEntryTest, ComparesTypeAndCase)
{
    const QJsonArray array = {QJsonObject{{"name", "Tintara"}}, QJsonObject{{"name", 5}}};
    EXPECT_TRUE(findEntry(array, "name", "tintara").isEmpty());
    EXPECT_TRUE(findEntry(array, "name", "5").isEmpty());
    EXPECT_FALSE(findEntry(array, "name", "Tintara").isEmpty());
}

TEST(FindEntryTest, SkipsElementsThatAreNotObjects)
{
    const QJsonArray array = {"x", 3, QJsonArray{"x"}, QJsonObject{{"name", "x"}}};
    EXPECT_EQ(findEntry(array, "name", "x"), (QJsonObject{{"name", "x"}}));
}

TEST(FindEntryTest, NoMatchGivesAnEmptyObject)
{
    EXPECT_TRUE(findEntry(QJsonArray(), "name", "").isEmpty());
    EXPECT_TRUE(findEntry(QJsonArray{QJsonObject{{"other", ""}}}, "name", "").isEmpty());
}
