#include "view/frm_about.h"

#include "controls/color_qt.h"
#include "controls/svg_face_qt.h"
#include "system/translation_qt.h"

#include <QDialogButtonBox>
#include <QFont>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <array>

namespace kv {
namespace {

constexpr int kLogoSize = 96;
constexpr double kTitleScale = 1.8;
constexpr double kReadable = 4.5;  // contrast of a text, WCAG 2 level AA

struct Link {
  const char* sentence;  // "%1" is the link
  const char* text;
  const char* address;
};

constexpr std::array kLinks = {
    Link{TrLater("Free software under the %1"), "GNU General Public License",
         "https://www.gnu.org/licenses/"},
    Link{TrLater("Plays by %1"), "mpv", "https://mpv.io/"},
    Link{TrLater("Windows by %1"), "Qt", "https://www.qt.io/"},
    Link{TrLater("Reads tags by %1"), "TagLib", "https://taglib.org/"},
};

// The theme's own colour for links, unless the ground swallows it.
QColor LinkColor(const QPalette& colors) {
  const QColor link = colors.color(QPalette::Link);
  return ContrastRatio(link, colors.color(QPalette::Window)) < kReadable
             ? colors.color(QPalette::WindowText)
             : link;
}

}  // namespace

frmAbout::frmAbout(const AboutVersion& version, const QString& logo, ShellServices& shell,
                   const QPalette& colors, QWidget* parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("frmAbout"));
  setWindowTitle(QTr("About - Kestrelview"));
  setModal(true);
  setPalette(colors);
  const QString link_color = LinkColor(colors).name();

  auto* const page = new QVBoxLayout(this);
  page->setSizeConstraint(QLayout::SetFixedSize);
  auto* const head = new QHBoxLayout;
  page->addLayout(head);

  auto* const picture = new QLabel(this);
  picture->setPixmap(RenderFace(logo, QColor(), QSize(kLogoSize, kLogoSize), devicePixelRatioF()));
  picture->setVisible(!picture->pixmap().isNull());
  head->addWidget(picture, 0, Qt::AlignTop);

  auto* const texts = new QVBoxLayout;
  head->addLayout(texts);
  auto* const name = new QLabel(QStringLiteral("Kestrelview"), this);
  QFont title = name->font();
  title.setPointSizeF(title.pointSizeF() * kTitleScale);
  title.setBold(true);
  name->setFont(title);
  texts->addWidget(name);
  auto* const number = new QLabel(
      QTr("Version %1.%2.%3").arg(version.major).arg(version.minor).arg(version.revision), this);
  number->setObjectName(QStringLiteral("lblVersion"));
  number->setTextInteractionFlags(Qt::TextSelectableByMouse);
  texts->addWidget(number);
  texts->addWidget(new QLabel(QTr("Plays films and music, exactly and fast."), this));
  texts->addSpacing(fontMetrics().height());

  for (const Link& link : kLinks) {
    // A link takes the program's colour and not its label's, unless it is told.
    const QString anchor =
        QStringLiteral("<a href=\"%1\" style=\"color: %2\">%3</a>")
            .arg(QLatin1String(link.address), link_color, QLatin1String(link.text));
    auto* const label = new QLabel(QTr(link.sentence).arg(anchor), this);
    label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    label->setAccessibleName(QTr(link.sentence).arg(QLatin1String(link.text)));
    label->setToolTip(QLatin1String(link.address));
    connect(label, &QLabel::linkActivated, this, [&shell](const QString& address) {
      shell.ShellOpenDocument(address.toStdString(), "", "", "open");
    });
    texts->addWidget(label);
  }

  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  page->addWidget(buttons);
  QPushButton* const close = buttons->button(QDialogButtonBox::Ok);
  close->setDefault(true);
  close->setFocus();
}

}  // namespace kv
