#include "local_service/scenes/SceneCatalogue.h"

#include "local_service/scenes/CalmScene.h"
#include "local_service/scenes/CityScene.h"
#include "local_service/scenes/FoodScene.h"
#include "local_service/scenes/ForestScene.h"
#include "local_service/scenes/OfficeScene.h"
#include "local_service/scenes/SeaScene.h"
#include "local_service/scenes/SpaceScene.h"
#include "local_service/scenes/TechScene.h"
#include "local_service/scenes/WealthScene.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <tuple>

using namespace Qt::StringLiterals;

namespace quilmora::sceneCatalogue
{
namespace
{

using Maker = std::unique_ptr<Scene> (*)();

template <typename Kind>
std::unique_ptr<Scene> makeScene()
{
    return std::make_unique<Kind>();
}

struct Entry {
    Maker make;
    QStringList words;
};

const std::array<Entry, 8> &entries()
{
    static const std::array<Entry, 8> table{
        Entry{makeScene<OfficeScene>,
              {u"办公"_s, u"豪华"_s, u"会议"_s, u"商务"_s, u"总裁"_s, u"老板"_s, u"公司"_s, u"职场"_s,
               u"写字楼"_s, u"落地窗"_s, u"书房"_s, u"书架"_s, u"图书"_s, u"室内"_s, u"客厅"_s, u"酒店"_s,
               u"别墅"_s, u"教室"_s, u"office"_s}},
        Entry{makeScene<TechScene>,
              {u"科技"_s,   u"未来"_s, u"霓虹"_s, u"赛博"_s, u"数字"_s, u"数据"_s, u"人工智能"_s,
               u"机器人"_s, u"AI"_s,   u"电脑"_s, u"编程"_s, u"代码"_s, u"芯片"_s, u"互联网"_s,
               u"电竞"_s,   u"游戏"_s, u"虚拟"_s, u"网格"_s, u"科幻"_s, u"tech"_s}},
        Entry{makeScene<WealthScene>,
              {u"金币"_s, u"金色"_s, u"金光"_s, u"黄金"_s, u"财"_s, u"钱"_s, u"钞"_s, u"富"_s, u"赚"_s,
               u"收入"_s, u"投资"_s, u"股"_s, u"理财"_s, u"红包"_s, u"gold"_s, u"money"_s}},
        Entry{makeScene<SeaScene>,
              {u"海"_s, u"沙滩"_s, u"浪"_s, u"岛"_s, u"椰"_s, u"棕榈"_s, u"度假"_s, u"夏天"_s, u"夏日"_s,
               u"蓝天"_s, u"泳"_s, u"beach"_s, u"sea"_s}},
        Entry{makeScene<CityScene>,
              {u"城市"_s, u"都市"_s, u"夜景"_s, u"夜晚"_s, u"夜色"_s, u"街"_s, u"高楼"_s, u"大厦"_s,
               u"天际线"_s, u"车流"_s, u"繁华"_s, u"上海"_s, u"北京"_s, u"纽约"_s, u"city"_s}},
        Entry{makeScene<SpaceScene>,
              {u"星空"_s, u"宇宙"_s, u"太空"_s, u"银河"_s, u"星球"_s, u"行星"_s, u"星云"_s, u"星辰"_s,
               u"火箭"_s, u"地球"_s, u"月球"_s, u"space"_s}},
        Entry{makeScene<ForestScene>,
              {u"森林"_s, u"自然"_s, u"山"_s, u"树"_s, u"草"_s, u"田"_s, u"花"_s, u"绿"_s, u"春"_s, u"户外"_s,
               u"露营"_s, u"雪"_s, u"湖"_s, u"乡村"_s, u"forest"_s}},
        Entry{makeScene<FoodScene>,
              {u"美食"_s, u"食"_s, u"餐"_s, u"火锅"_s, u"厨"_s, u"烹饪"_s, u"料理"_s, u"烧烤"_s, u"面条"_s,
               u"饭"_s, u"菜"_s, u"小吃"_s, u"咖啡"_s, u"甜品"_s, u"food"_s}},
    };
    return table;
}

} // namespace

std::unique_ptr<Scene> make(QStringView text)
{
    // More words win; among equals the one that is named first.
    std::tuple<int, qsizetype> best{0, 0};
    Maker chosen = nullptr;
    for (const Entry &entry : entries()) {
        int count = 0;
        qsizetype first = text.size();
        for (const QString &word : entry.words) {
            const qsizetype at = text.indexOf(word, 0, Qt::CaseInsensitive);
            if (at >= 0) {
                ++count;
                first = std::min(first, at);
            }
        }
        if (const std::tuple<int, qsizetype> own{count, -first}; count > 0 && (!chosen || own > best)) {
            best = own;
            chosen = entry.make;
        }
    }
    return chosen ? chosen() : nullptr;
}

std::unique_ptr<Scene> makeCalm(int hue)
{
    return std::make_unique<CalmScene>(hue);
}

} // namespace quilmora::sceneCatalogue
