#include "local_service/cover/CommonWords.h"

#include <QSet>
#include <QString>
#include <QStringView>

namespace quilmora::commonWords
{
namespace
{

/// Two signs each, without separators.
constexpr QStringView allWords =
    u"如何怎么怎样什么为什为何多少哪里哪些这样那样这个那个这些那些这里那里这才真正真的真相其实原来居然竟然终"
    u"于已经正在"
    u"可以可能应该必须需要不要不能不会不是不知不用没有没人还有还是就是只是只要只有如果因为所以但是而且或者以"
    u"及一定"
    u"一个一种一张一次一天一年一起一切一直一样一下一招一生一桶第一第二第三最后最终最好最强最新最大今天明天昨"
    u"天现在未来"
    u"过去以前以后之前之后时间时候小时分钟每天每年每月上班下班工作职场办公公司老板员工同事创业打工赚钱花钱省"
    u"钱存钱月入"
    u"年入收入财富自由投资理财股票基金房子买房租房副业搞钱致富普通人们大家我们你们他们自己别人朋友孩子父母家"
    u"人老师学生"
    u"高手新手小白大神专家达人男人女人年轻中年老人生活人生世界中国美国城市农村森林大海海边星空宇宙自然旅行旅"
    u"游美食吃饭"
    u"做饭厨房餐厅咖啡健康健身减肥运动跑步睡眠熬夜护肤化妆穿搭拍照摄影照片图片视频封面剪辑爆款标题文案直播短"
    u"视流量粉丝"
    u"账号平台内容创作素材教程方法技巧秘密秘诀干货攻略指南推荐测评体验对比学习学会学校大学考试英语知识读书阅"
    u"读写作思维"
    u"逻辑认知能力成长成功失败努力坚持放弃改变开始结束离开回来逃离选择决定问题答案原因结果关键重点经验故事历"
    u"史文化科技"
    u"智能人工机器手机电脑软件工具系统数据代码编程程序设计游戏玩家电影音乐汽车开车新能源能震惊惊喜快乐幸福情"
    u"绪焦虑压力"
    u"恋爱爱情结婚婚姻离婚单身社交沟通聊天说话表达演讲千万百万十万万元块钱免费便宜值得后悔注意警惕小心避坑踩"
    u"坑陷阱骗局"
    u"揭秘曝光盘点总结分享全网全部全球完整彻底轻松简单快速高效有效实用必看必学超级绝对尽头背后打烊吃遍整条条"
    u"街看海高级"
    u"版本升级更新保姆零基基础入门进阶实战案例项目产品市场营销销售客户品牌运营管理团队领导赚到得到看到学到做"
    u"到找到遇到想到桶金";

const QSet<quint64> &table()
{
    static const QSet<quint64> words = [] {
        QSet<quint64> result;
        for (qsizetype i = 0; i + 1 < allWords.size(); i += 2) {
            result.insert(quint64{allWords[i].unicode()} << 32U | allWords[i + 1].unicode());
        }
        return result;
    }();
    return words;
}

} // namespace

bool contains(char32_t first, char32_t second)
{
    return table().contains(quint64{first} << 32U | quint64{second});
}

} // namespace quilmora::commonWords
