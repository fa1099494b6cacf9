// SPDX-License-Identifier: MIT
#include "PictureFixture.h"

#include "SlateQt/QtTheme.h"
#include "ViewportTestApplication.h"

#include <QDir>

#include <algorithm>
#include <cstdlib>

FPictureTest::FPictureTest()
{
	EnsureViewportTestApplication();
	ApplyQtTheme(EQtTheme::Dark);
	Panel = std::make_unique<FViewportPanel>();
}

FPictureTest::~FPictureTest() = default;

void FPictureTest::Show()
{
	ASSERT_TRUE(Panel->HasPicture()) << Panel->WhyNoPicture().toStdString();
	Panel->resize(800, 600);
	Panel->show();
	ASSERT_TRUE(QTest::qWaitForWindowExposed(Panel.get()));
}

QImage FPictureTest::Grab()
{
	QApplication::processEvents();
	return Panel->GrabPicture();
}

QImage FPictureTest::GrabAll()
{
	Panel->FrameAll();
	return Grab();
}

void FPictureTest::Keep(const QImage& Picture, const char* Name)
{
	const QString Folder = qEnvironmentVariable("TARVIN_TEST_PICTURES");
	if (!Folder.isEmpty())
	{
		EXPECT_TRUE(QDir().mkpath(Folder));
		EXPECT_TRUE(Picture.save(QStringLiteral("%1/%2.png").arg(Folder, QLatin1String(Name))));
	}
}

QPoint FPictureTest::PlaceOf(const USceneComponent* Component, const FVector& Local) const
{
	return Panel->PlaceOf(Component->GetComponentTransform().TransformPosition(Local));
}

int FPictureTest::Difference(QRgb A, QRgb B)
{
	return std::max({std::abs(qRed(A) - qRed(B)), std::abs(qGreen(A) - qGreen(B)), std::abs(qBlue(A) - qBlue(B))});
}

int FPictureTest::NumDifferent(const QImage& A, const QImage& B, int Tolerance)
{
	EXPECT_EQ(A.size(), B.size());
	int Count = 0;
	for (int Y = 0; Y < A.height(); ++Y)
	{
		for (int X = 0; X < A.width(); ++X)
		{
			Count += Difference(A.pixel(X, Y), B.pixel(X, Y)) > Tolerance;
		}
	}
	return Count;
}
