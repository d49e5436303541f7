#include "gallery/IndexPage.h"

#include "gallery/ScreenshotPlan.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace quilmora::gallery {
namespace {

const auto head = uR"(<!DOCTYPE html>
<html lang="zh-CN">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Quilmora 画面一览</title>
<style>
:root { color-scheme: light dark; --ground: #f5f5f7; --ink: #1d1d1f; --faint: #6e6e73; --line: #d2d2d7; }
@media (prefers-color-scheme: dark) {
  :root { --ground: #1c1c1e; --ink: #f5f5f7; --faint: #98989d; --line: #3a3a3c; }
}
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 1720px; padding: 56px 40px 120px; background: var(--ground); color: var(--ink);
  font: 15px/1.5 -apple-system, "SF Pro Text", "PingFang SC", "Noto Sans CJK SC", sans-serif; }
h1 { margin: 0; font-size: 34px; font-weight: 700; letter-spacing: -0.01em; }
header p, nav { color: var(--faint); }
nav { display: flex; flex-wrap: wrap; gap: 4px 18px; margin: 20px 0 0; padding: 0; }
a { color: inherit; text-decoration: none; }
nav a:hover { color: var(--ink); }
section { margin-top: 56px; padding-top: 24px; border-top: 1px solid var(--line); }
h2 { margin: 0; font-size: 20px; font-weight: 600; }
h2 small { margin-left: 10px; color: var(--faint); font-size: 13px; font-weight: 400; }
h3 { margin: 22px 0 8px; color: var(--faint); font-size: 12px; font-weight: 500; }
.pair { display: grid; grid-template-columns: 1fr 1fr; gap: 24px; }
.pair img { display: block; width: 100%; height: auto; border-radius: 10px; box-shadow: 0 1px 2px #0003, 0 8px 28px #0002; }
</style>
</head>
<body>
)"_s;

QString sizeText(const View &view)
{
    return view.whole ? u"%1 宽，整页"_s.arg(view.size.width())
                      : u"%1 × %2"_s.arg(view.size.width()).arg(view.size.height());
}

/// One picture, the finest behind the one that fits the screen.
QString figure(const ScreenshotPlan &plan, const Scene &scene, const View &view, ColorScheme scheme)
{
    QStringList sources;
    for (const int ratio : plan.ratios) {
        sources.append(pictureName(scene, view, scheme, ratio) + u" %1x"_s.arg(ratio));
    }
    const QString look = scheme == ColorScheme::light ? u"浅色"_s : u"深色"_s;
    return u"<a href=\"%1\"><img loading=\"lazy\" src=\"%2\" srcset=\"%3\" alt=\"%4（%5）\"></a>\n"_s.arg(
        pictureName(scene, view, scheme, plan.ratios.constLast()),
        pictureName(scene, view, scheme, plan.ratios.constFirst()), sources.join(u", "_s), scene.caption,
        look);
}

QString section(const ScreenshotPlan &plan, const Scene &scene)
{
    QString html = u"<section id=\"%1\">\n<h2>%2<small>%1</small></h2>\n"_s.arg(scene.name, scene.caption);
    for (const View &view : plan.views(scene)) {
        html += u"<h3>%1</h3>\n<div class=\"pair\">\n"_s.arg(sizeText(view));
        for (const ColorScheme scheme : plan.schemes) {
            html += figure(plan, scene, view, scheme);
        }
        html += u"</div>\n"_s;
    }
    return html + u"</section>\n"_s;
}

} // namespace

QString indexPage(const ScreenshotPlan &plan)
{
    QString links;
    QString sections;
    for (const Scene &scene : allScenes()) {
        links += u"<a href=\"#%1\">%2</a>\n"_s.arg(scene.name, scene.caption);
        sections += section(plan, scene);
    }
    return head +
           u"<header>\n<h1>Quilmora</h1>\n<p>每个画面的每种状态，浅色与深色。点按图片查看最高分辨率。</p>\n<nav>\n"_s +
           links + u"</nav>\n</header>\n"_s + sections + u"</body>\n</html>\n"_s;
}

} // namespace quilmora::gallery
