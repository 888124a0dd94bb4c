"""A window of Qt 5 with a red button "marker" in it, whose place can so be seen and be asked for."""
import sys

from PyQt5.QtWidgets import QApplication, QPushButton, QWidget

application = QApplication(sys.argv)
application.setDesktopFileName("org.example.Placed")
window = QWidget()
window.setWindowTitle("Placed")
window.resize(400, 300)
marker = QPushButton("", window)
marker.setAccessibleName("marker")
marker.setStyleSheet("background: #ff0000; border: none;")
marker.setGeometry(13, 17, 120, 60)
window.show()
application.exec()
